#ifndef SXMATL_H
#define SXMATL_H

#include "SMatl.h"
#include "SXmatlEntries.h"

class QXmlStreamReader;
class QXmlStreamWriter;

// An XML technology file ("stf"): sources, units, comments, variables, conductor and
// dielectric materials, mesh and model definitions, bias definitions, the stackup and
// dielectric maps, public or private. Units and comments live in SMatl; the rest in the
// data. The lists of SMatl are the simplified view that SimplifyVelTech builds from the
// stackup, so that SetIntoProject works as for a material file.
//
// A private part is written plain ("private") or, with encryptOnWrite and a key file,
// enciphered ("privenc"). A "privenc" element is read only with allowDecrypt; otherwise it
// is passed over and no copy of it is kept.
class SXmatl : public SMatl {
  SCOLLECTABLE_DECLARE(SXmatl)
public:
  SXmatl();
  ~SXmatl() override;
  SXmatl(const SXmatl&) = delete;
  SXmatl& operator=(const SXmatl&) = delete;

  // The whole file; false after the first failure's message (file name and line).
  bool Read(const SString& fileName) override;
  // The XML text, complete or not written at all.
  bool Write(const SString& fileName) override;
  // The document as Write would put it in a file; false after the failing stage's message.
  bool WriteText(QByteArray& text);

  // Builds the simplified lists and sets them, the variables and the covers into the project.
  bool SetIntoProject(SProject& project);
  // With the simplified lists only; without them nothing happens.
  bool SetMaterialsIntoProject(SProject& project, SCircuit& circuit) override;
  // The dielectrics, metal, via and brick layers and their mappings of the stackup, as the
  // lists of SMatl. False, after a message, when a layer names what isn't defined.
  bool SimplifyVelTech();
  // Each dielectric of the simplified list takes the values of its dielectric material.
  bool SimplifyDielMatl();

  // A deep copy of another technology file, private content and flags included.
  void Clone(const SXmatl& other);
  // Fills this (fresh) object from a material file that was read.
  bool ProcessSMatlToSXmatl(const SMatl& matl);

  // Equal content, label by label, in the words of the comparison; `report` gets a line per
  // difference. Private content is compared only when both have it.
  bool IsSameXmatl(const SXmatl& other, QStringList* report = nullptr) const;
  bool IsEqual(const SMatlMaterial& other) const override;

  SXmatlData& Data() { return itsData; }
  const SXmatlData& GetData() const { return itsData; }

  bool IsEncryptOnWrite() const { return itsEncryptOnWrite; }
  void SetEncryptOnWrite(bool on) { itsEncryptOnWrite = on; }
  bool IsAllowDecrypt() const { return itsAllowDecrypt; }
  void SetAllowDecrypt(bool on) { itsAllowDecrypt = on; }
  bool IsPrivencSeen() const { return itsPrivencSeen; }
  bool HasPrivate() const { return itsHasPrivate; }
  void SetHasPrivate(bool on) { itsHasPrivate = on; }
  const SString& GetKeyFile() const { return itsKeyFile; }
  void SetKeyFile(const SString& path) { itsKeyFile = path; }
  const SString& GetKeyText() const { return itsKeyText; }
  void SetKeyText(const SString& text) { itsKeyText = text; }
  bool IsSimplifiedView() const { return itsSimplifiedView; }
  bool IsSimplifiedReady() const { return itsSimplifiedReady; }

protected:
  // Scales the technology file's own values with those of SMatl.
  void ConvertUnits() override;

private:
  friend class SXmatlReader;
  friend class SXmatlWriter;

  void Reset();
  // The private part as elements of the writer: materials, bias definitions, stackup and
  // dielectric maps flagged private.
  bool WritePrivenc(QXmlStreamWriter& xml);
  // Adds the SMatl entries of one layer of the stackup.
  bool SimplifyMetal(const SXmatlLayer& layer, int level);
  bool SimplifyVia(const SXmatlLayer& layer);
  bool SimplifyBrick(const SXmatlLayer& layer, int level);
  void AddMappings(const SXmatlLayer& layer);
  bool SetCoverIntoProject(SProject& project, SCircuit& circuit, const SXmatlCover& cover, bool top);
  // The message of a layer that names what isn't defined: "<file>, line <n>".
  SString Where(long long line) const;

  SXmatlData itsData;
  bool itsEncryptOnWrite = false;
  bool itsAllowDecrypt = false;
  bool itsPrivencSeen = false;
  bool itsHasPrivate = false;
  SString itsKeyFile;
  SString itsKeyText;
  bool itsSimplifiedView = false;
  bool itsSimplifiedReady = false;
};

#endif
