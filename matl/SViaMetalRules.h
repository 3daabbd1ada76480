#ifndef SVIAMETALRULES_H
#define SVIAMETALRULES_H

#include "SViaMetalRule.h"

#include <vector>

class QTextStream;
class SCommentedFile;

// The contents of a via metal rule file (extension "cvt"): which layers a conversion makes
// into vias and which stay planar. A new object holds the hard-coded defaults, one
// "userule" and one "emptyrule".
class SViaMetalRules {
public:
  SViaMetalRules();

  const SString& GetTitle() const { return itsTitle; }
  void SetTitle(const SString& title) { itsTitle = title; }
  const SString& GetDescription() const { return itsDescription; }
  void SetDescription(const SString& description) { itsDescription = description; }
  // True once rules were read from a file or from lines.
  bool HasRule() const { return itsHasRule; }

  // In order; the "userule" and the "emptyrule" are held once each.
  const std::vector<SViaMetalRule>& GetRules() const { return itsRules; }
  // A "userule" or "emptyrule" replaces the one held; a "rule" goes to the end.
  void AddRule(const SViaMetalRule& rule);
  // The rule held of that kind, the first "rule" for Rule; null if none.
  const SViaMetalRule* FindRule(int kind) const;
  // All name patterns of the rules of a kind, in order.
  std::vector<SString> GetNames(int kind) const;

  // Reads the whole grammar from the file's next line on. On failure the rules held stay as
  // they were, and the text goes to message 5760 when `report` is set. `name` stands for
  // the file's own name in that text.
  bool Read(SCommentedFile& file, bool report = true, const SString& name = SString());
  // A file with ";" comments and "&" continuation.
  bool ReadFile(const SString& fileName, bool report = true);
  void Write(QTextStream& out) const;
  // Complete or not written at all.
  bool WriteFile(const SString& fileName) const;

  // Fills the open answers of the query: a matching "userule" by its "onlyvia" attribute,
  // else the first "rule" whose name matches by the layer's state, else for a layer
  // without a name the "emptyrule", else a "rule" with default values.
  void Evaluate(SViaMetalRuleQuery& query) const;

  // "Rules File (" name ") " " Line: " line and the text of the last failed read.
  const SString& GetErrorText() const { return itsErrorText; }
  long long GetErrorLine() const { return itsErrorLine; }

  bool operator==(const SViaMetalRules& other) const {
    return itsTitle == other.itsTitle && itsDescription == other.itsDescription && itsRules == other.itsRules;
  }
  bool operator!=(const SViaMetalRules& other) const { return !(*this == other); }

private:
  bool ReadBody(SCommentedFile& file, SString& error);

  SString itsTitle;
  SString itsDescription;
  std::vector<SViaMetalRule> itsRules;
  bool itsHasRule = false;
  SString itsErrorText;
  long long itsErrorLine = 0;
};

#endif
