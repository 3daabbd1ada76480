#include "SXMLUtil.h"

#include <algorithm>

SXMLUtil::~SXMLUtil() {
  while (itsCurrent && itsCurrent != itsFile.GetRoot()) {
    SXMLElement* open = itsCurrent;
    itsCurrent = open->GetParent();
    delete open;
  }
}

void SXMLUtil::SetRoot(const SString& name, const SString& fileName) {
  itsFile.SetFile(fileName, name);
  itsCurrent = itsFile.GetRoot();
}

SXMLElement* SXMLUtil::OpenElement(const SString& name) {
  itsCurrent = new SXMLElement(name, itsCurrent);
  return itsCurrent;
}

SXMLElement* SXMLUtil::OpenElement(const SString& name, const SString& attribute, const SString& value) {
  SXMLElement* element = OpenElement(name);
  element->SetAttribute(attribute, value);
  return element;
}

bool SXMLUtil::CloseElement() {
  SXMLElement* parent = itsCurrent->GetParent();
  if (!parent) return false;
  parent->AddChild(itsCurrent);
  itsCurrent = parent;
  return true;
}

SXMLElement* SXMLUtil::AddDataElement(const SString& name, const SString& text) {
  SXMLElement* element = new SXMLElement(name);
  element->AddData(text);
  itsCurrent->AddChild(element);
  return element;
}

SXMLElement* SXMLUtil::AddDataElement(const SString& name, const SString& attribute, const SString& value,
                                      const SString& text) {
  SXMLElement* element = AddDataElement(name, text);
  element->SetAttribute(attribute, value);
  return element;
}

SXMLElement* SXMLUtil::AddDataElement(const SString& name, double value) {
  return AddDataElement(name, FormatDouble(value));
}

SXMLElement* SXMLUtil::AddDataElement(const SString& name, int value) {
  return AddDataElement(name, SString::number(static_cast<long long>(value)));
}

SXMLElement* SXMLUtil::AddDataElement(const SString& name, bool value) {
  return AddDataElement(name, SString(value ? "1" : "0"));
}

void SXMLUtil::SetAttribute(const SString& name, const SString& value) { itsCurrent->SetAttribute(name, value); }

void SXMLUtil::SetFieldWidth(int width) { itsFieldWidth = std::max(1, std::min(17, width)); }

SString SXMLUtil::FormatDouble(double value) const {
  // The shortest form within the width: "g" drops the zeros that end a fraction.
  return SString(QString::number(value, 'g', itsFieldWidth));
}
