#ifndef CORPUS_H
#define CORPUS_H

// Real streams written by other tools, with an independent reader's view of
// each. Tests over them skip when the folder is absent.

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QString>

#include <cctype>
#include <string>
#include <vector>

namespace gdstest {

inline QString CorpusDir()
{
    return QString(GDS_CORPUS_DIR);
}

// Stands in for the file list when there is no corpus, so that the tests
// skip instead of vanishing.
const char* const kNoCorpus = "no_corpus";

inline std::vector<std::string> CorpusFiles()
{
    std::vector<std::string> files;
    for (const QString& name : QDir(CorpusDir() + "/public").entryList({"*.gds"}, QDir::Files, QDir::Name))
        files.push_back(name.toStdString());
    if (files.empty())
        files.push_back(kNoCorpus);
    return files;
}

inline QString CorpusStream(const std::string& file)
{
    return CorpusDir() + "/public/" + QString::fromStdString(file);
}

// The oracle of `file`; empty when there is none.
inline QJsonObject CorpusOracle(const std::string& file)
{
    QFile json(CorpusDir() + "/oracle/" + QString::fromStdString(file) + ".json");
    if (file == kNoCorpus || !json.open(QIODevice::ReadOnly))
        return QJsonObject();
    return QJsonDocument::fromJson(json.readAll()).object();
}

inline std::string CorpusTestName(const testing::TestParamInfo<std::string>& info)
{
    std::string name;
    for (char c : info.param)
        name += std::isalnum((unsigned char)c) ? c : '_';
    return name;
}

} // namespace gdstest

#endif
