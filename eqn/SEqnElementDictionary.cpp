#include "SEqnElementDictionary.h"

#include "SCollectableString.h"

SCOLLECTABLE_DEFINE(SEqnElementDictionary, SID_EQNELEMENTDICTIONARY, &SHashDictionary::staticTypeInfo())

namespace {
struct SConstantEntry {
  const char* name;
  double value;
};

const SConstantEntry kConstants[] = {
    {"PI", 3.141592653589793},
    {"TWO_PI", 6.283185307179586},
    {"ETA_0", 376.7303136},
    {"EPSILON_0", 8.854187816e-12},
    {"MU_0", 1.2566370614359173e-06},
    {"VELC", 299792458.0},
    {"RAD_TO_DEG", 57.29577951308232},
    {"DEG_TO_RAD", 0.017453292519943295},
    // Stored as a float where it was first defined; files written since hold that value.
    {"INF", static_cast<double>(1e20f)},
};
}  // namespace

SEqnElementDictionary::SEqnElementDictionary() {
  for (int code = 0; code < SEqnFunction::FUNCTION_COUNT; ++code) {
    const SString name(SEqnFunction::TableName(static_cast<SEqnFunction::Code>(code)));
    if (!name.isEmpty()) AddElement(name, new SEqnFunction(static_cast<SEqnFunction::Code>(code)));
  }
  AddElement("abs", new SEqnFunction(SEqnFunction::MAG, "abs"));
  for (const SConstantEntry& constant : kConstants)
    AddElement(constant.name, new SEqnValue(constant.value, constant.name, true));
  for (int code = 0; code < SEqnProperty::PROPERTY_COUNT; ++code) {
    const SEqnProperty::Code property = static_cast<SEqnProperty::Code>(code);
    AddElement(SEqnProperty::PropertyName(property), new SEqnProperty(property, SEqnProperty::PropertyName(property)));
  }
}

SEqnElementDictionary::~SEqnElementDictionary() { clearAndDestroy(); }

void SEqnElementDictionary::AddElement(const SString& name, SEqnElement* element) {
  SCollectableString* key = new SCollectableString(name.upper());
  if (!insertKeyAndValue(key, element)) {
    delete key;
    delete element;
  }
}

const SEqnElement* SEqnElementDictionary::FindElement(const SString& name) const {
  const SCollectableString key(name.upper());
  return static_cast<const SEqnElement*>(findValue(&key));
}

const SEqnElementDictionary& SEqnElementDictionary::Standard() {
  static const SEqnElementDictionary dictionary;
  return dictionary;
}
