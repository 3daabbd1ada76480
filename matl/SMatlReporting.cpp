#include "SMatlReporting.h"

#include "SVeloraError.h"

#include <algorithm>
#include <cstdio>

SMatlReporting& SMatlReporting::Instance() {
  static SMatlReporting instance;
  return instance;
}

void SMatlReporting::Deliver(int kind, int number, const SString& text) {
  if (itsMode == 0) return;
  if (itsMode == 1) {
    if (kind == Error) {
      std::fprintf(stderr, "*ERROR* Velora: %s\n", text.data());
      std::fflush(stderr);
    } else {
      std::fprintf(stdout, "%s%s\n", kind == Warning ? "*WARNING* Velora: " : "", text.data());
      std::fflush(stdout);
    }
    return;
  }
  const Handler& handler = kind == Error ? itsErrorHandler : itsMessageHandler;
  if (handler) handler(kind, number, text);
}

void SMatlReporting::ReportError(const SString& text, int number) { Deliver(Error, number, text); }

void SMatlReporting::ReportWarning(const SString& text, int number) { Deliver(Warning, number, text); }

void SMatlReporting::ReportNote(const SString& text) { Deliver(Note, 0, text); }

void SMatlReporting::LineError(int number, const SString& file, long long line, const SString& lineText,
                               const SString& value) {
  SString text;
  VeloraFormatMessage(text, number, file.data(), static_cast<int>(line), lineText.data(), value.data());
  Deliver(Error, number, text);
}

void SMatlReporting::LineWarning(int number, const SString& file, long long line, const SString& lineText,
                                 const SString& value) {
  SString text;
  VeloraFormatMessage(text, number, file.data(), static_cast<int>(line), lineText.data(), value.data());
  Deliver(Warning, number, text);
}

void SMatlReporting::NameError(int number, const SString& name) {
  SString text;
  VeloraFormatMessage(text, number, name.data());
  Deliver(Error, number, text);
}

void SMatlReporting::NameWarning(int number, const SString& name) {
  SString text;
  VeloraFormatMessage(text, number, name.data());
  Deliver(Warning, number, text);
}

void SMatlReporting::WriteError(int number, const SString& name, const SString& file) {
  SString text;
  VeloraFormatMessage(text, number, name.data(), file.data());
  Deliver(Error, number, text);
}

SMatlReportCapture::SMatlReportCapture() {
  SMatlReporting& reporting = SMatlReporting::Instance();
  itsSavedMode = reporting.GetMode();
  itsSavedError = reporting.GetErrorHandler();
  itsSavedMessage = reporting.GetMessageHandler();
  auto keep = [this](int kind, int number, const SString& text) { itsEntries.push_back({kind, number, text}); };
  reporting.SetErrorHandler(keep);
  reporting.SetMessageHandler(keep);
  reporting.SetMode(2);
}

SMatlReportCapture::~SMatlReportCapture() {
  SMatlReporting& reporting = SMatlReporting::Instance();
  reporting.SetMode(itsSavedMode);
  reporting.SetErrorHandler(itsSavedError);
  reporting.SetMessageHandler(itsSavedMessage);
}

std::vector<int> SMatlReportCapture::Numbers(int kind) const {
  std::vector<int> numbers;
  for (const SEntry& entry : itsEntries)
    if (entry.kind == kind) numbers.push_back(entry.number);
  return numbers;
}

bool SMatlReportCapture::Has(int kind, int number) const {
  return std::any_of(itsEntries.begin(), itsEntries.end(),
                     [&](const SEntry& entry) { return entry.kind == kind && entry.number == number; });
}
