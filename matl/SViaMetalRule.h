#ifndef SVIAMETALRULE_H
#define SVIAMETALRULE_H

#include "SString.h"

#include <vector>

class QTextStream;
class SCommentedFile;

// One pair of answers of a rule: whether a layer becomes vias and whether its planar
// polygons stay. The given flags say that a file named the key, so that writing puts
// back only what was read.
class SViaMetalRuleAttr {
public:
  SViaMetalRuleAttr() {}
  SViaMetalRuleAttr(bool createVia, bool keepPlanar) : itsCreateVia(createVia), itsKeepPlanar(keepPlanar) {}

  void SetCreateVia(bool on) {
    itsCreateVia = on;
    itsCreateViaGiven = true;
  }
  void SetKeepPlanar(bool on) {
    itsKeepPlanar = on;
    itsKeepPlanarGiven = true;
  }
  bool IsGiven() const { return itsCreateViaGiven || itsKeepPlanarGiven; }

  bool operator==(const SViaMetalRuleAttr& other) const {
    return itsCreateVia == other.itsCreateVia && itsKeepPlanar == other.itsKeepPlanar &&
           itsCreateViaGiven == other.itsCreateViaGiven && itsKeepPlanarGiven == other.itsKeepPlanarGiven;
  }
  bool operator!=(const SViaMetalRuleAttr& other) const { return !(*this == other); }

  bool itsCreateVia = false;
  bool itsKeepPlanar = false;
  bool itsCreateViaGiven = false;
  bool itsKeepPlanarGiven = false;
};

// The question about one layer: its name and what polygons it holds in, the two answers
// out. An answer that is already given is left alone by every later rule.
class SViaMetalRuleQuery {
public:
  SViaMetalRuleQuery() {}
  SViaMetalRuleQuery(const SString& layerName, bool hasPlanar, bool hasVias)
      : itsLayerName(layerName), itsHasPlanar(hasPlanar), itsHasVias(hasVias) {}

  // The attribute that suits the layer (an SViaMetalRule::Attr): an empty name, no polygons,
  // vias only, planar only; a layer with both kinds matches none of them and takes the
  // template.
  int State() const;
  // Fills the answers that are still open.
  void Answer(const SViaMetalRuleAttr& attr);
  bool IsAnswered() const { return itsCreateViaAnswered && itsKeepPlanarAnswered; }

  SString itsLayerName;
  bool itsHasPlanar = false;
  bool itsHasVias = false;
  bool itsCreateVia = false;
  bool itsKeepPlanar = false;
  bool itsCreateViaAnswered = false;
  bool itsKeepPlanarAnswered = false;
};

// One rule of a rule file: which layer names it applies to and, for each state of a layer,
// the answers.
class SViaMetalRule {
public:
  enum Kind { UseRule = 0, EmptyRule = 1, Rule = 2 };
  enum Attr { OnlyPlanar = 0, OnlyVia = 1, NotUsed = 2, IsEmpty = 3, Template = 4, AttrCount = 5 };
  enum Compare { Case = 0, NoCase = 1, RegExp = 2 };

  // The defaults of the kind.
  explicit SViaMetalRule(int kind = Rule);

  int GetKind() const { return itsKind; }
  const SViaMetalRuleAttr& GetAttr(int attr) const { return itsAttrs[attr]; }
  SViaMetalRuleAttr& Attr(int attr) { return itsAttrs[attr]; }
  bool IsTemplate() const { return itsIsTemplate; }
  void SetTemplate(bool on) { itsIsTemplate = on; }
  int GetCompareMode() const { return itsCompare; }
  void SetCompareMode(int mode) { itsCompare = mode; }
  const std::vector<SString>& GetNames() const { return itsNames; }
  void SetNames(const std::vector<SString>& names) { itsNames = names; }

  // Wildcards ("*", "?") match the whole name, in "nocase" with case folded; a regular
  // expression matches anywhere in it.
  bool MatchesName(const SString& name) const;
  static bool WildcardMatch(const QString& pattern, const QString& name);

  // From the rule's first line, on which the file stands, through its closing line. On
  // failure `error` holds the text and the file stands on the line at fault.
  bool Read(SCommentedFile& file, SString& error);
  void Write(QTextStream& out) const;

  static const char* KindWord(int kind);
  static const char* AttrWord(int attr);
  static const char* CompareWord(int mode);
  // -1 for a word that isn't one; case is ignored.
  static int KindFromWord(const SString& word);
  static int AttrFromWord(const SString& word);
  static int CompareFromWord(const SString& word);

  // The grammar's tokens are "key" or "key=value", split at the first "="; words are
  // compared without regard to case.
  static void SplitToken(const SString& token, SString& key, SString& value);
  static bool IsWord(const SString& key, const char* word);
  // The next line and its first token; fails with the grammar's text at the end of the
  // file or on a line without a token.
  static bool NextLine(SCommentedFile& file, SString& key, SString& value, SString& error);

  bool operator==(const SViaMetalRule& other) const;
  bool operator!=(const SViaMetalRule& other) const { return !(*this == other); }

private:
  bool ReadAttributes(SCommentedFile& file, SViaMetalRuleAttr& attr, SString& error);
  bool ReadNames(SCommentedFile& file, SString& error);

  int itsKind = Rule;
  SViaMetalRuleAttr itsAttrs[AttrCount];
  bool itsIsTemplate = false;
  int itsCompare = NoCase;
  std::vector<SString> itsNames;
};

#endif
