#include "SMatlMetalData.h"

SMatlMetalData::SMatlMetalData() {}
bool SMatlMetalData::SetUnusedToDefault(const SString&) { return false; }
