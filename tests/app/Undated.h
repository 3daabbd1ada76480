#ifndef GDS_TESTS_UNDATED_H
#define GDS_TESTS_UNDATED_H

#include <QRegularExpression>
#include <QString>

#include <string>

// A project's text without the lines that carry the time of writing.
inline std::string Undated(const std::string& project)
{
    QString text = QString::fromStdString(project);
    text.remove(QRegularExpression("^(DAT|BUILT_BY_CREATED|MDATE|HDATE) [^\n]*\n",
                                   QRegularExpression::MultilineOption));
    return text.toStdString();
}

#endif
