#ifndef SVALID_H
#define SVALID_H

#include "SString.h"

// A value with a validity flag and the text shown while it isn't valid.
template <typename T>
class SValidValue {
public:
  SValidValue(T initial, const SString& invalidText = SString()) : itsValue(initial), itsInvalidText(invalidText) {}
  SValidValue(T value, bool valid, const SString& invalidText) : itsValue(value), itsValid(valid), itsInvalidText(invalidText) {}

  bool IsValid() const { return itsValid; }
  T GetValue() const { return itsValue; }
  void Set(T value) {
    itsValue = value;
    itsValid = true;
  }
  void SetValid(bool valid) { itsValid = valid; }
  void SetInvalid() { itsValid = false; }
  const SString& GetInvalidText() const { return itsInvalidText; }
  void SetInvalidText(const SString& text) { itsInvalidText = text; }

  SValidValue& operator=(T value) {
    Set(value);
    return *this;
  }
  bool operator==(const SValidValue& o) const {
    return itsValid == o.itsValid && (!itsValid || itsValue == o.itsValue);
  }
  bool operator!=(const SValidValue& o) const { return !(*this == o); }

protected:
  T itsValue;
  bool itsValid = false;
  SString itsInvalidText;
};

// Holds 99.0 until set.
class SDoubleValid : public SValidValue<double> {
public:
  SDoubleValid() : SValidValue<double>(99.0) {}
  explicit SDoubleValid(double value) : SValidValue<double>(value, true, SString()) {}
  SDoubleValid(double value, bool valid, const SString& invalidText = SString())
      : SValidValue<double>(value, valid, invalidText) {}
  using SValidValue<double>::operator=;
  // The number with the given significant digits, or the invalid text.
  SString GetText(int significantDigits = 15) const {
    return itsValid ? SString::number(itsValue, significantDigits) : itsInvalidText;
  }
};

class SIntValid : public SValidValue<int> {
public:
  SIntValid() : SValidValue<int>(0) {}
  explicit SIntValid(int value) : SValidValue<int>(value, true, SString()) {}
  SIntValid(int value, bool valid, const SString& invalidText = SString()) : SValidValue<int>(value, valid, invalidText) {}
  using SValidValue<int>::operator=;
  SString GetText() const { return itsValid ? SString::number(static_cast<long long>(itsValue)) : itsInvalidText; }
};

class SBooleanValid : public SValidValue<bool> {
public:
  SBooleanValid() : SValidValue<bool>(false) {}
  explicit SBooleanValid(bool value) : SValidValue<bool>(value, true, SString()) {}
  SBooleanValid(bool value, bool valid, const SString& invalidText = SString())
      : SValidValue<bool>(value, valid, invalidText) {}
  using SValidValue<bool>::operator=;
  SString GetText() const { return itsValid ? SString(itsValue ? "true" : "false") : itsInvalidText; }
};

#endif
