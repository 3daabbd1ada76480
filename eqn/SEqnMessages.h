#ifndef SEQNMESSAGES_H
#define SEQNMESSAGES_H

#include "SString.h"

// Message numbers of the equation library; the texts are in strings_filelib.h.
enum SEqnMessageNumber {
  kEqnLineColumnMessage = 7739,
  kEqnAtEndMessage = 7740,
  kEqnAtCharacterMessage = 7741,
  kEqnFunctionContext = 7760,
  kEqnOperatorContext = 7761,
  kEqnNegateContext = 7762,
  kEqnNumberContext = 7763,
  kEqnConstantContext = 7764,
  kEqnArgumentContext = 7765,
  kEqnPropertyContext = 7766,
  kEqnStringContext = 7767,
  kEqnBracketContext = 7768,
  kEqnFormatContext = 7769
};

// The error codes of parsing, checking and evaluating an equation.
enum SEqnErrorCode {
  kEqnNoError = 0,
  kEqnUnclosedParenthesis = 1,
  kEqnUnopenedParenthesis = 2,
  kEqnMissingOperandAtEnd = 3,
  kEqnBadCharacter = 4,
  kEqnOperatorForOperand = 5,
  kEqnOperandAfterOperand = 6,
  kEqnBadBracket = 7,
  kEqnMisplacedComma = 8,
  kEqnMissingOperand = 9,
  kEqnUnclosedString = 10,
  kEqnBadNumber = 11,
  kEqnFunctionWithoutParenthesis = 12,
  kEqnUnknownName = 13,
  kEqnUnknownFunction = 14,
  kEqnStackUnderflow = 15,
  kEqnStackLeftOver = 16,
  kEqnEvaluationUnderflow = 17,
  kEqnUnresolvedName = 18,
  kEqnEmpty = 19,
  kEqnArgumentWithoutValue = 20,
  kEqnMisplacedString = 21,
  kEqnErrorCodeCount
};

// The message number of an error code; 0 for a code outside the table.
int SEqnErrorMessageNumber(int code);
// The text of a message with one string argument (ignored by texts that take none).
SString SEqnMessage(int number, const SString& argument = SString());
// The words of an error code with its token or name.
SString SEqnErrorWords(int code, const SString& token = SString());

#endif
