#include "SViaMetalRule.h"

#include "SCommentedFile.h"

#include <QRegExp>
#include <QTextStream>

namespace {

const char* const kKindWords[] = {"userule", "emptyrule", "rule"};
const char* const kAttrWords[] = {"onlyplanar", "onlyvia", "notused", "isempty", "template"};
const char* const kCompareWords[] = {"case", "nocase", "regexp"};

int WordIndex(const SString& word, const char* const* words, int count) {
  for (int i = 0; i < count; ++i)
    if (word.compare(SString(words[i]), true) == 0) return i;
  return -1;
}

}  // namespace

// ---- tokens

void SViaMetalRule::SplitToken(const SString& token, SString& key, SString& value) {
  const int at = token.qstring().indexOf(QLatin1Char('='));
  if (at < 0) {
    key = token;
    value.clear();
    return;
  }
  key = token.left(at);
  value = token.mid(at + 1);
}

bool SViaMetalRule::IsWord(const SString& key, const char* word) { return key.compare(SString(word), true) == 0; }

bool SViaMetalRule::NextLine(SCommentedFile& file, SString& key, SString& value, SString& error) {
  if (!file.NextLine()) {
    error = "end of file found";
    return false;
  }
  SString token;
  if (!file.GetToken(token)) {
    error = "more keywords expected";
    return false;
  }
  SplitToken(token, key, value);
  return true;
}

// ---- the query

int SViaMetalRuleQuery::State() const {
  if (itsLayerName.isEmpty()) return SViaMetalRule::IsEmpty;
  if (itsHasPlanar && itsHasVias) return SViaMetalRule::Template;
  if (itsHasVias) return SViaMetalRule::OnlyVia;
  if (itsHasPlanar) return SViaMetalRule::OnlyPlanar;
  return SViaMetalRule::NotUsed;
}

void SViaMetalRuleQuery::Answer(const SViaMetalRuleAttr& attr) {
  if (!itsCreateViaAnswered) {
    itsCreateVia = attr.itsCreateVia;
    itsCreateViaAnswered = true;
  }
  if (!itsKeepPlanarAnswered) {
    itsKeepPlanar = attr.itsKeepPlanar;
    itsKeepPlanarAnswered = true;
  }
}

// ---- the rule

SViaMetalRule::SViaMetalRule(int kind) : itsKind(kind) {
  if (kind == Rule || kind == UseRule) {
    itsAttrs[OnlyVia].itsCreateVia = true;
    itsAttrs[Template].itsCreateVia = true;
  }
  itsAttrs[IsEmpty].itsCreateVia = kind != Rule;
  itsNames.push_back("*via*");
}

const char* SViaMetalRule::KindWord(int kind) { return kind >= 0 && kind < 3 ? kKindWords[kind] : ""; }
const char* SViaMetalRule::AttrWord(int attr) { return attr >= 0 && attr < AttrCount ? kAttrWords[attr] : ""; }
const char* SViaMetalRule::CompareWord(int mode) { return mode >= 0 && mode < 3 ? kCompareWords[mode] : ""; }
int SViaMetalRule::KindFromWord(const SString& word) { return WordIndex(word, kKindWords, 3); }
int SViaMetalRule::AttrFromWord(const SString& word) { return WordIndex(word, kAttrWords, AttrCount); }
int SViaMetalRule::CompareFromWord(const SString& word) { return WordIndex(word, kCompareWords, 3); }

bool SViaMetalRule::WildcardMatch(const QString& pattern, const QString& name) {
  // Greedy with a return to the last star: linear for the usual patterns, never worse
  // than the product of the lengths.
  int p = 0, n = 0, star = -1, resume = 0;
  while (n < name.size()) {
    if (p < pattern.size() && (pattern[p] == QLatin1Char('?') || pattern[p] == name[n])) {
      ++p;
      ++n;
    } else if (p < pattern.size() && pattern[p] == QLatin1Char('*')) {
      star = p++;
      resume = n;
    } else if (star >= 0) {
      p = star + 1;
      n = ++resume;
    } else {
      return false;
    }
  }
  while (p < pattern.size() && pattern[p] == QLatin1Char('*')) ++p;
  return p == pattern.size();
}

bool SViaMetalRule::MatchesName(const SString& name) const {
  for (const SString& pattern : itsNames) {
    switch (itsCompare) {
      case RegExp: {
        QRegExp expression(pattern.qstring());
        if (expression.isValid() && expression.indexIn(name.qstring()) >= 0) return true;
        break;
      }
      case Case:
        if (WildcardMatch(pattern.qstring(), name.qstring())) return true;
        break;
      default:
        if (WildcardMatch(pattern.qstring().toCaseFolded(), name.qstring().toCaseFolded())) return true;
        break;
    }
  }
  return false;
}

bool SViaMetalRule::ReadAttributes(SCommentedFile& file, SViaMetalRuleAttr& attr, SString& error) {
  SString token, key, value;
  while (file.GetToken(token)) {
    SplitToken(token, key, value);
    const bool yes = IsWord(value, "yes");
    if (IsWord(key, "createvia")) {
      attr.SetCreateVia(yes);
    } else if (IsWord(key, "keepplanar")) {
      attr.SetKeepPlanar(yes);
    } else {
      error = "unknown keyword";
      return false;
    }
  }
  return true;
}

bool SViaMetalRule::ReadNames(SCommentedFile& file, SString& error) {
  SString token, key, value;
  while (file.GetToken(token)) {
    SplitToken(token, key, value);
    if (!IsWord(key, "compare")) {
      error = "unknown keyword";
      return false;
    }
    const int mode = CompareFromWord(value);
    if (mode < 0) {
      error = "unknown compare mode: " + value;
      return false;
    }
    itsCompare = mode;
  }
  itsNames.clear();
  for (;;) {
    if (!file.NextLine()) {
      error = "end of file found";
      return false;
    }
    // The pattern is the line as it stands: quotes stay, only the comment is gone. A line
    // that begins with a quote is always a pattern.
    const SString line = SString(file.CurrentLine().qstring().trimmed());
    SString first;
    if (!line.startsWith("\"") && file.GetToken(first) && IsWord(first, "end_names")) return true;
    itsNames.push_back(line);
  }
}

bool SViaMetalRule::Read(SCommentedFile& file, SString& error) {
  file.RewindLine();
  SString token, key, value;
  if (!file.GetToken(token)) {
    error = "rule keyword expected";
    return false;
  }
  SplitToken(token, key, value);
  const int kind = KindFromWord(key);
  if (kind < 0) {
    error = "unknown rule keyword: " + key;
    return false;
  }
  *this = SViaMetalRule(kind);
  const SString closing = SString("end_") + KindWord(kind);
  for (;;) {
    if (!NextLine(file, key, value, error)) return false;
    if (IsWord(key, closing.data())) return true;
    if (IsWord(key, "names")) {
      if (!ReadNames(file, error)) return false;
      continue;
    }
    const int attr = AttrFromWord(key);
    if (attr < 0) {
      error = "unknown rule attr: " + key;
      return false;
    }
    if (attr == Template) itsIsTemplate = true;
    if (!ReadAttributes(file, itsAttrs[attr], error)) return false;
  }
}

void SViaMetalRule::Write(QTextStream& out) const {
  out << KindWord(itsKind) << '\n';
  for (int i = 0; i < AttrCount; ++i) {
    const SViaMetalRuleAttr& attr = itsAttrs[i];
    if (!attr.IsGiven() && !(i == Template && itsIsTemplate)) continue;
    out << AttrWord(i);
    if (attr.itsCreateViaGiven) out << " createvia=" << (attr.itsCreateVia ? "yes" : "no");
    if (attr.itsKeepPlanarGiven) out << " keepplanar=" << (attr.itsKeepPlanar ? "yes" : "no");
    out << '\n';
  }
  out << "names compare=" << CompareWord(itsCompare) << '\n';
  for (const SString& name : itsNames) out << name.qstring() << '\n';
  out << "end_names\n";
  out << "end_" << KindWord(itsKind) << '\n';
}

bool SViaMetalRule::operator==(const SViaMetalRule& other) const {
  if (itsKind != other.itsKind || itsIsTemplate != other.itsIsTemplate || itsCompare != other.itsCompare ||
      itsNames != other.itsNames)
    return false;
  for (int i = 0; i < AttrCount; ++i)
    if (itsAttrs[i] != other.itsAttrs[i]) return false;
  return true;
}
