#ifndef SXMATLWRITER_H
#define SXMATLWRITER_H

#include "SString.h"

class QXmlStreamWriter;
class SXmatl;
struct SXmatlLayer;

// Writes the elements of a technology file in the order a file holds them. Each block
// writes the entries whose private flag is the one asked for.
class SXmatlWriter {
public:
  SXmatlWriter(const SXmatl& source, QXmlStreamWriter& xml) : itsSource(source), itsXml(xml) {}

  void WriteSources();
  void WriteUnits();
  void WriteComments();
  void WriteVariables(bool isPrivate);
  void WriteMaterials(bool isPrivate);
  void WriteMeshDefs(bool isPrivate);
  void WriteModelDefs(bool isPrivate);
  void WriteBiasDefs(bool isPrivate);
  void WriteStackup(bool isPrivate);
  void WriteDielMaps(bool isPrivate);
  // The children of "private" (and of the enciphered "privenc" document), in their order.
  void WritePrivateContent();

  static SString Number(double value);

private:
  void WriteLayer(const SXmatlLayer& layer);

  const SXmatl& itsSource;
  QXmlStreamWriter& itsXml;
};

#endif
