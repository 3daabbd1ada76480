#ifndef SXMATLREADER_H
#define SXMATLREADER_H

#include "SString.h"

#include <QXmlStreamAttributes>

class QXmlStreamReader;
class SXmatl;
struct SXmatlLayer;
struct SXmatlMap;

// Reads one XML document into a technology file: the whole file, or the deciphered private
// part. Element and attribute names are compared as they stand; an unknown child element is
// passed over with its content. The first failure is reported, by number, with the file
// name and the line, and ends the read.
class SXmatlReader {
public:
  SXmatlReader(SXmatl& target, QXmlStreamReader& xml, const SString& fileName);

  // A document whose root is "technology_file".
  bool ReadFile();
  // A document whose root is "privenc": the private part, as in "private".
  bool ReadPrivencDocument();

private:
  bool Fail(int number);
  // Ends the read after a message that names the file and the line.
  bool FailAt(int number, long long line, const SString& detail = SString());
  // The document ended early or isn't XML.
  bool FailXml();
  long long Line() const;

  bool ReadSources();
  bool ReadUnits();
  bool ReadComments();
  // The children of "public" or "private" (and of the "privenc" document).
  bool ReadBlock(bool isPrivate, bool enciphered);
  bool ReadPrivenc();
  bool ReadVariables(bool isPrivate);
  bool ReadMaterials(bool isPrivate);
  bool ReadConductor(bool isPrivate);
  bool ReadDielectric(bool isPrivate);
  bool ReadMeshDefs(bool isPrivate);
  bool ReadModelDefs(bool isPrivate);
  bool ReadBiasDefs(bool isPrivate);
  bool ReadStackup(bool isPrivate);
  bool ReadCover(bool isPrivate, bool top);
  bool ReadDiel(bool isPrivate);
  bool ReadVias(bool isPrivate);
  // A metal, brick or via layer; an ignored one is passed over and `kept` is false.
  bool ReadLayer(SXmatlLayer& layer, bool& kept);
  bool ReadMap(SXmatlMap& map, const int* failures);
  bool ReadDielMaps(bool isPrivate);

  // Attribute helpers over the current element's attributes; each fails with `failure`.
  bool Has(const char* name) const;
  SString Text(const char* name) const;
  // A text that must be there and not empty.
  bool Required(const char* name, SString& value, int failure);
  // A text that may be missing but not empty.
  bool NotEmpty(const char* name, SString& value, int failure);
  bool Real(const char* name, double& value, int failure, bool required = false, double minimum = -1e308);
  bool RealOrInf(const char* name, double& value, bool& infinite, int failure, bool required);
  bool Int(const char* name, int& value, int failure, int minimum);
  // "true" or "false" in any case (or `yes`/`no` as given); missing keeps `value`.
  bool Flag(const char* name, bool& value, int failure, const char* yes = "true", const char* no = "false");
  // One of `words` in any case, its index into `codes`.
  bool Word(const char* name, int& value, int failure, const char* const* words, const int* codes, int count);

  SXmatl& itsTarget;
  QXmlStreamReader& itsXml;
  SString itsFileName;
  QXmlStreamAttributes itsAttributes;
  bool itsReported = false;
};

#endif
