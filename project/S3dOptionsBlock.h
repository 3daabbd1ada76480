#ifndef S3DOPTIONSBLOCK_H
#define S3DOPTIONSBLOCK_H

#include "SFileBlock.h"

#include <vector>

// 3DOPTIONS: the vertical scale of the 3D view, overall and per level.
class S3dOptionsBlock : public SFileBlock {
  SCOLLECTABLE_DECLARE(S3dOptionsBlock)
  SCOLLECTABLE_COPYABLE(S3dOptionsBlock)
public:
  // More entries than any stack of levels has; a larger count is a broken line.
  static constexpr int kMaxEntries = 100000;

  explicit S3dOptionsBlock(SProject* owner = nullptr) : SFileBlock(owner, "3DOPTIONS") {}

  bool ReadBody(SFile& file, SProjectErrorManager& errors) override;
  bool Write(SProjectStream& out) override;
  void WriteBody(SProjectStream& out) override;

  float GetGlobalScale() const { return itsGlobalScale; }
  void SetGlobalScale(float scale) { itsGlobalScale = scale; }
  // 1.0 beyond the end of the list.
  double GetScale(size_t i) const { return i < itsScales.size() ? itsScales[i] : 1.0; }
  const std::vector<double>& GetScales() const { return itsScales; }
  void SetScales(const std::vector<double>& scales) { itsScales = scales; }

private:
  float itsGlobalScale = 1.0f;
  std::vector<double> itsScales;
};

#endif
