#ifndef SXMLUTIL_H
#define SXMLUTIL_H

#include "SXMLFile.h"

// Builds a document element by element: an opened element becomes current, and joins its
// parent's children when it is closed. Numbers are written as text.
class SXMLUtil {
public:
  SXMLUtil() {}
  // Elements still open are deleted; they never joined the tree.
  ~SXMLUtil();
  SXMLUtil(const SXMLUtil&) = delete;
  SXMLUtil& operator=(const SXMLUtil&) = delete;

  // Names the root and the file that Save writes, and makes the root current.
  void SetRoot(const SString& name, const SString& fileName);
  SXMLElement* OpenElement(const SString& name);
  SXMLElement* OpenElement(const SString& name, const SString& attribute, const SString& value);
  // Appends the current element to its parent and makes the parent current; false at the root.
  bool CloseElement();
  // A complete child of the current element holding `text` as DATA.
  SXMLElement* AddDataElement(const SString& name, const SString& text);
  // Keeps a string literal from being taken as a bool.
  SXMLElement* AddDataElement(const SString& name, const char* text) { return AddDataElement(name, SString(text)); }
  SXMLElement* AddDataElement(const SString& name, const SString& attribute, const SString& value,
                              const SString& text);
  // To the field width in significant digits, with the zeros that end a fraction cut.
  SXMLElement* AddDataElement(const SString& name, double value);
  SXMLElement* AddDataElement(const SString& name, int value);
  // "1" or "0".
  SXMLElement* AddDataElement(const SString& name, bool value);
  void SetAttribute(const SString& name, const SString& value);

  // Significant digits of a double, 1 to 17; 16 at the start.
  void SetFieldWidth(int width);
  int GetFieldWidth() const { return itsFieldWidth; }
  SString FormatDouble(double value) const;

  bool Save() { return itsFile.Write(); }
  SXMLFile& GetFile() { return itsFile; }
  SXMLElement* GetCurrent() const { return itsCurrent; }

private:
  SXMLFile itsFile;
  SXMLElement* itsCurrent = itsFile.GetRoot();
  int itsFieldWidth = 16;
};

#endif
