#include "SCmdOption.h"

#include <QFile>
#include <QTextStream>

#include <cstdlib>
#include <locale.h>

namespace {

// Numbers on a command line always use a decimal point, whatever the
// process locale says.
locale_t CLocale()
{
    static locale_t locale = newlocale(LC_ALL_MASK, "C", locale_t(0));
    return locale;
}

SString NextArgument(int& position, const QString& next)
{
    ++position;
    // "--" behind an option is taken as an empty value, not as a terminator.
    if (next == QLatin1String("--"))
        return SString();
    return SString(next);
}

}

SCOLLECTABLE_DEFINE(SCmdOption, SID_CMDOPTION, &SCollectableString::staticTypeInfo())
SCOLLECTABLE_DEFINE(SCmdOptionArgumentNextArgv, SID_CMDOPTIONARGUMENTNEXTARGV,
                    &SCmdOption::staticTypeInfo())
SCOLLECTABLE_DEFINE(SCmdOptionArgumentString, SID_CMDOPTIONARGUMENTSTRING,
                    &SCmdOption::staticTypeInfo())
SCOLLECTABLE_DEFINE(SCmdOptionArgumentFloat, SID_CMDOPTIONARGUMENTFLOAT,
                    &SCmdOption::staticTypeInfo())
SCOLLECTABLE_DEFINE(SCmdOptionArgumentInteger, SID_CMDOPTIONARGUMENTINTEGER,
                    &SCmdOption::staticTypeInfo())

// ---------------------------------------------------------------- SCmdOption

SCmdOption::SCmdOption(const SString& name, int type)
    : SCollectableString(name), itsType(type)
{
}

SCmdOption::SCmdOption(const SCmdOption& other)
    : SCollectableString(other), itsType(other.itsType)
{
}

SCmdOption::~SCmdOption() = default;

int SCmdOption::compareTo(const SCollectable* other) const
{
    const SCmdOption* option = dynamic_cast<const SCmdOption*>(other);
    if (!option)
        return SCollectableString::compareTo(other);
    const int length = qstring().length();
    const int otherLength = option->qstring().length();
    if (length != otherLength)
        return length > otherLength ? -1 : 1;
    const int result = qstring().compare(option->qstring(), Qt::CaseSensitive);
    return result < 0 ? -1 : (result > 0 ? 1 : 0);
}

bool SCmdOption::isEqual(const SCollectable* other) const
{
    return compareTo(other) == 0;
}

void SCmdOption::PrintOn(QTextStream& stream) const
{
    stream << '-' << qstring();
}

void SCmdOption::StripFrom(SString& text)
{
    text.remove(0, length());
}

void SCmdOption::TakeValue(int&, int, char**)
{
}

void SCmdOption::TakeValue(int&, const QStringList&)
{
}

bool SCmdOption::Matches(const SString& text) const
{
    return text.qstring().startsWith(qstring(), Qt::CaseSensitive);
}

SCmdOption* SCmdOption::Clone() const
{
    return new SCmdOption(*this);
}

bool SCmdOption::EqualTo(const SCmdOption& other) const
{
    return isA() == other.isA() && itsType == other.itsType && qstring() == other.qstring();
}

SString SCmdOption::GetName() const
{
    return SString(qstring());
}

int SCmdOption::GetType() const
{
    return itsType;
}

void SCmdOption::SetName(const SString& name)
{
    SString::operator=(name);
}

void SCmdOption::SetType(int type)
{
    itsType = type;
}

SString SCmdOption::GetValueText() const
{
    return SString();
}

// ------------------------------------------------ SCmdOptionArgumentNextArgv

SCmdOptionArgumentNextArgv::SCmdOptionArgumentNextArgv(const SString& name, int type)
    : SCmdOption(name, type)
{
}

void SCmdOptionArgumentNextArgv::StripFrom(SString& text)
{
    text = SString();
}

void SCmdOptionArgumentNextArgv::TakeValue(int& position, int argc, char** argv)
{
    if (!argv || position < 0 || position + 1 >= argc || !argv[position + 1])
        return;
    itsValue = NextArgument(position, QFile::decodeName(argv[position + 1]));
}

void SCmdOptionArgumentNextArgv::TakeValue(int& position, const QStringList& list)
{
    if (position < 0 || position + 1 >= list.size())
        return;
    itsValue = NextArgument(position, list.at(position + 1));
}

SCmdOption* SCmdOptionArgumentNextArgv::Clone() const
{
    return new SCmdOptionArgumentNextArgv(*this);
}

bool SCmdOptionArgumentNextArgv::EqualTo(const SCmdOption& other) const
{
    const auto* same = dynamic_cast<const SCmdOptionArgumentNextArgv*>(&other);
    return same && SCmdOption::EqualTo(other) && itsValue == same->itsValue;
}

void SCmdOptionArgumentNextArgv::PrintOn(QTextStream& stream) const
{
    SCmdOption::PrintOn(stream);
    stream << ' ' << itsValue.qstring();
}

// -------------------------------------------------- SCmdOptionArgumentString

SCmdOptionArgumentString::SCmdOptionArgumentString(const SString& name, int type)
    : SCmdOption(name, type)
{
}

void SCmdOptionArgumentString::StripFrom(SString& text)
{
    itsValue = SString(text.qstring().mid(length()));
    text = SString();
}

SCmdOption* SCmdOptionArgumentString::Clone() const
{
    return new SCmdOptionArgumentString(*this);
}

bool SCmdOptionArgumentString::EqualTo(const SCmdOption& other) const
{
    const auto* same = dynamic_cast<const SCmdOptionArgumentString*>(&other);
    return same && SCmdOption::EqualTo(other) && itsValue == same->itsValue;
}

void SCmdOptionArgumentString::PrintOn(QTextStream& stream) const
{
    SCmdOption::PrintOn(stream);
    stream << itsValue.qstring();
}

// --------------------------------------------------- SCmdOptionArgumentFloat

SCmdOptionArgumentFloat::SCmdOptionArgumentFloat(const SString& name, int type)
    : SCmdOption(name, type)
{
}

void SCmdOptionArgumentFloat::StripFrom(SString& text)
{
    const QString rest = text.qstring().mid(length());
    // A number is plain ASCII, so the bytes read are the characters read.
    const QByteArray bytes = rest.toUtf8();
    char* end = nullptr;
    itsValue = strtod_l(bytes.constData(), &end, CLocale());
    const int used = int(end - bytes.constData());
    text = SString(rest.mid(used));
}

SCmdOption* SCmdOptionArgumentFloat::Clone() const
{
    return new SCmdOptionArgumentFloat(*this);
}

bool SCmdOptionArgumentFloat::EqualTo(const SCmdOption& other) const
{
    const auto* same = dynamic_cast<const SCmdOptionArgumentFloat*>(&other);
    return same && SCmdOption::EqualTo(other) && itsValue == same->itsValue;
}

SString SCmdOptionArgumentFloat::GetValueText() const
{
    return SString(QString::number(itsValue, 'g', 15));
}

void SCmdOptionArgumentFloat::PrintOn(QTextStream& stream) const
{
    SCmdOption::PrintOn(stream);
    stream << GetValueText().qstring();
}

// ------------------------------------------------- SCmdOptionArgumentInteger

SCmdOptionArgumentInteger::SCmdOptionArgumentInteger(const SString& name, int type)
    : SCmdOption(name, type)
{
}

void SCmdOptionArgumentInteger::StripFrom(SString& text)
{
    const QString rest = text.qstring().mid(length());
    const QByteArray bytes = rest.toUtf8();
    char* end = nullptr;
    itsValue = strtol(bytes.constData(), &end, 10);
    const int used = int(end - bytes.constData());
    text = SString(rest.mid(used));
}

SCmdOption* SCmdOptionArgumentInteger::Clone() const
{
    return new SCmdOptionArgumentInteger(*this);
}

bool SCmdOptionArgumentInteger::EqualTo(const SCmdOption& other) const
{
    const auto* same = dynamic_cast<const SCmdOptionArgumentInteger*>(&other);
    return same && SCmdOption::EqualTo(other) && itsValue == same->itsValue;
}

SString SCmdOptionArgumentInteger::GetValueText() const
{
    return SString::number(static_cast<long long>(itsValue));
}

void SCmdOptionArgumentInteger::PrintOn(QTextStream& stream) const
{
    SCmdOption::PrintOn(stream);
    stream << GetValueText().qstring();
}
