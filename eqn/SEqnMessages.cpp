#include "SEqnMessages.h"

#include "SVeloraError.h"

namespace {
const int kErrorMessages[kEqnErrorCodeCount] = {7732, 7733, 7734, 7742, 7746, 7747, 7748, 7749, 7750, 7751, 7752,
                                                7754, 7753, 7735, 7755, 7736, 7737, 7736, 7738, 7743, 7744, 7745};
}  // namespace

int SEqnErrorMessageNumber(int code) {
  return code >= 0 && code < kEqnErrorCodeCount ? kErrorMessages[code] : 0;
}

SString SEqnMessage(int number, const SString& argument) {
  SString text;
  // The argument goes through its own copy: data() of a shared text may change under us.
  const QByteArray bytes = argument.toUtf8();
  VeloraFormatMessage(text, number, bytes.constData());
  return text;
}

SString SEqnErrorWords(int code, const SString& token) {
  const int number = SEqnErrorMessageNumber(code);
  if (number == 0) return SString::format("Equation error %d", code);
  return SEqnMessage(number, token);
}
