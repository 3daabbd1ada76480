#include "SViaMetalRules.h"

#include "SCommentedFile.h"
#include "SSafeSave.h"
#include "SVeloraError.h"

#include <QString>
#include <QTextStream>

namespace {

const int kFileProblem = 5602;
const int kRuleProblem = 5760;

// The text of a title or description line behind its keyword and an equals sign: the rest
// of the line as written, and not its tokens, so that inner blanks and quotes stay.
SString LineValue(const SCommentedFile& file, const SString& key, const SString& tokenValue) {
  QString line = file.CurrentLine().qstring().trimmed();
  if (!line.startsWith(key.qstring(), Qt::CaseInsensitive)) return tokenValue;
  line = line.mid(key.length()).trimmed();
  if (line.startsWith(QLatin1Char('='))) line = line.mid(1).trimmed();
  return SString(line);
}

}  // namespace

SViaMetalRules::SViaMetalRules() {
  itsRules.push_back(SViaMetalRule(SViaMetalRule::UseRule));
  itsRules.push_back(SViaMetalRule(SViaMetalRule::EmptyRule));
}

void SViaMetalRules::AddRule(const SViaMetalRule& rule) {
  if (rule.GetKind() != SViaMetalRule::Rule)
    for (SViaMetalRule& held : itsRules)
      if (held.GetKind() == rule.GetKind()) {
        held = rule;
        return;
      }
  itsRules.push_back(rule);
}

const SViaMetalRule* SViaMetalRules::FindRule(int kind) const {
  for (const SViaMetalRule& rule : itsRules)
    if (rule.GetKind() == kind) return &rule;
  return nullptr;
}

std::vector<SString> SViaMetalRules::GetNames(int kind) const {
  std::vector<SString> names;
  for (const SViaMetalRule& rule : itsRules)
    if (rule.GetKind() == kind) names.insert(names.end(), rule.GetNames().begin(), rule.GetNames().end());
  return names;
}

bool SViaMetalRules::ReadBody(SCommentedFile& file, SString& error) {
  SString token, key, value;
  if (file.NextLine() && file.GetToken(token)) SViaMetalRule::SplitToken(token, key, value);
  if (!SViaMetalRule::IsWord(key, "viametalrules")) {
    error = "viametalrules expected";
    return false;
  }
  key.clear();
  if (file.GetToken(token)) SViaMetalRule::SplitToken(token, key, value);
  if (!SViaMetalRule::IsWord(key, "version")) {
    error = "version expected";
    return false;
  }
  if (value != "1") {
    error = "version number should be 1";
    return false;
  }
  for (;;) {
    if (!SViaMetalRule::NextLine(file, key, value, error)) return false;
    if (SViaMetalRule::IsWord(key, "end_viametalrules")) return true;
    if (SViaMetalRule::IsWord(key, "title")) {
      itsTitle = LineValue(file, key, value);
    } else if (SViaMetalRule::IsWord(key, "description")) {
      itsDescription = LineValue(file, key, value);
    } else if (SViaMetalRule::KindFromWord(key) >= 0) {
      SViaMetalRule rule;
      if (!rule.Read(file, error)) return false;
      AddRule(rule);
    } else {
      error = "unknown keyword";
      return false;
    }
  }
}

bool SViaMetalRules::Read(SCommentedFile& file, bool report, const SString& name) {
  SViaMetalRules read;
  SString error;
  if (!read.ReadBody(file, error)) {
    itsErrorLine = file.LineCount();
    itsErrorText = "Rules File (" + (name.isEmpty() ? file.GetFilename() : name) + ") " + " Line: " + SString::number(itsErrorLine) + " " + error;
    if (report) VeloraErrorReport(kFileProblem, kRuleProblem, itsErrorText.data());
    return false;
  }
  read.itsHasRule = true;
  *this = read;
  return true;
}

bool SViaMetalRules::ReadFile(const SString& fileName, bool report) {
  SCommentedFile file(fileName, ";", "&");
  if (!file.IsOk()) {
    itsErrorLine = 0;
    itsErrorText = "Rules File (" + fileName + ") " + " Line: 0 the file could not be opened";
    if (report) VeloraErrorReport(kFileProblem, kRuleProblem, itsErrorText.data());
    return false;
  }
  return Read(file, report);
}

void SViaMetalRules::Write(QTextStream& out) const {
  out << "viametalrules version=1\n";
  if (!itsTitle.isEmpty()) out << "title=" << itsTitle.qstring() << '\n';
  if (!itsDescription.isEmpty()) out << "description=" << itsDescription.qstring() << '\n';
  for (const SViaMetalRule& rule : itsRules) rule.Write(out);
  out << "end_viametalrules\n";
}

bool SViaMetalRules::WriteFile(const SString& fileName) const {
  QString text;
  QTextStream out(&text);
  Write(out);
  out.flush();
  SSafeSave save(fileName);
  return save.Commit(text.toUtf8().toStdString());
}

void SViaMetalRules::Evaluate(SViaMetalRuleQuery& query) const {
  const SViaMetalRule* user = FindRule(SViaMetalRule::UseRule);
  if (user && user->MatchesName(query.itsLayerName)) query.Answer(user->GetAttr(SViaMetalRule::OnlyVia));
  const int state = query.State();
  for (const SViaMetalRule& rule : itsRules)
    if (rule.GetKind() == SViaMetalRule::Rule && rule.MatchesName(query.itsLayerName)) {
      query.Answer(rule.GetAttr(state));
      return;
    }
  const SViaMetalRule* empty = FindRule(SViaMetalRule::EmptyRule);
  if (query.itsLayerName.isEmpty() && empty) {
    query.Answer(empty->GetAttr(SViaMetalRule::IsEmpty));
    return;
  }
  query.Answer(SViaMetalRule(SViaMetalRule::Rule).GetAttr(state));
}
