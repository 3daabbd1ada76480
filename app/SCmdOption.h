#ifndef SCMDOPTION_H
#define SCMDOPTION_H

#include "SCollectableString.h"

#include <QStringList>

class QTextStream;

// One known command line option. The string is the option's name without the
// dash. A plain SCmdOption is a flag; the subclasses take a value.
// Class numbers of the command line options.
enum SCmdOptionClassID : ClassID {
    SID_CMDOPTION = 2001,
    SID_CMDOPTIONARGUMENTNEXTARGV = 2002,
    SID_CMDOPTIONARGUMENTSTRING = 2003,
    SID_CMDOPTIONARGUMENTFLOAT = 2004,
    SID_CMDOPTIONARGUMENTINTEGER = 2005
};

class SCmdOption : public SCollectableString
{
    SCOLLECTABLE_DECLARE(SCmdOption)
    SCOLLECTABLE_COPYABLE(SCmdOption)
public:
    explicit SCmdOption(const SString& name = SString(), int type = 0);
    SCmdOption(const SCmdOption& other);
    ~SCmdOption() override;

    // Longer names first, then case-sensitive text order: this is the order
    // in which an argument is matched, so "-dv" works and "-vd" doesn't.
    int compareTo(const SCollectable* other) const override;
    bool isEqual(const SCollectable* other) const override;

    virtual void PrintOn(QTextStream& stream) const;
    // Removes the matched name from the front of `text`. A flag leaves the
    // rest so that further flags bundled behind it can match.
    virtual void StripFrom(SString& text);
    // Lets the option take its value from the argument behind `position`,
    // moving `position` on when it does.
    virtual void TakeValue(int& position, int argc, char** argv);
    virtual void TakeValue(int& position, const QStringList& list);
    // True when `text` begins with the name (case-sensitive).
    virtual bool Matches(const SString& text) const;
    virtual SCmdOption* Clone() const;
    virtual bool EqualTo(const SCmdOption& other) const;
    virtual SString GetName() const;
    virtual int GetType() const;
    virtual void SetName(const SString& name);
    virtual void SetType(int type);

    // The value as text; empty for a flag.
    virtual SString GetValueText() const;

protected:
    int itsType = 0;
};

// Takes the next argument as its value: "-l file".
class SCmdOptionArgumentNextArgv : public SCmdOption
{
    SCOLLECTABLE_DECLARE(SCmdOptionArgumentNextArgv)
    SCOLLECTABLE_COPYABLE(SCmdOptionArgumentNextArgv)
public:
    explicit SCmdOptionArgumentNextArgv(const SString& name = SString(), int type = 0);

    // Discards the whole rest: "-lfoo x" gives x, and foo is lost.
    void StripFrom(SString& text) override;
    void TakeValue(int& position, int argc, char** argv) override;
    void TakeValue(int& position, const QStringList& list) override;
    SCmdOption* Clone() const override;
    bool EqualTo(const SCmdOption& other) const override;
    SString GetValueText() const override { return itsValue; }
    void PrintOn(QTextStream& stream) const override;

    const SString& GetValue() const { return itsValue; }
    void SetValue(const SString& value) { itsValue = value; }

private:
    SString itsValue;
};

// Takes the rest of the same argument as its value: "-Nname".
class SCmdOptionArgumentString : public SCmdOption
{
    SCOLLECTABLE_DECLARE(SCmdOptionArgumentString)
    SCOLLECTABLE_COPYABLE(SCmdOptionArgumentString)
public:
    explicit SCmdOptionArgumentString(const SString& name = SString(), int type = 0);

    void StripFrom(SString& text) override;
    SCmdOption* Clone() const override;
    bool EqualTo(const SCmdOption& other) const override;
    SString GetValueText() const override { return itsValue; }
    void PrintOn(QTextStream& stream) const override;

    const SString& GetValue() const { return itsValue; }

private:
    SString itsValue;
};

// Takes the number at the start of the rest of the same argument; what
// follows the number stays for further options.
class SCmdOptionArgumentFloat : public SCmdOption
{
    SCOLLECTABLE_DECLARE(SCmdOptionArgumentFloat)
    SCOLLECTABLE_COPYABLE(SCmdOptionArgumentFloat)
public:
    explicit SCmdOptionArgumentFloat(const SString& name = SString(), int type = 0);

    void StripFrom(SString& text) override;
    SCmdOption* Clone() const override;
    bool EqualTo(const SCmdOption& other) const override;
    SString GetValueText() const override;
    void PrintOn(QTextStream& stream) const override;

    double GetValue() const { return itsValue; }

private:
    double itsValue = 0.0;
};

class SCmdOptionArgumentInteger : public SCmdOption
{
    SCOLLECTABLE_DECLARE(SCmdOptionArgumentInteger)
    SCOLLECTABLE_COPYABLE(SCmdOptionArgumentInteger)
public:
    explicit SCmdOptionArgumentInteger(const SString& name = SString(), int type = 0);

    void StripFrom(SString& text) override;
    SCmdOption* Clone() const override;
    bool EqualTo(const SCmdOption& other) const override;
    SString GetValueText() const override;
    void PrintOn(QTextStream& stream) const override;

    long GetValue() const { return itsValue; }

private:
    long itsValue = 0;
};

#endif
