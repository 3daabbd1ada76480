// Runs a fuzz target over saved inputs, for builds without the fuzzer:
// every argument is a file or a directory of files.

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <cstdio>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace {
int Replay(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        fprintf(stderr, "can not read %s\n", qPrintable(path));
        return 1;
    }
    QByteArray bytes = file.readAll();
    LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(bytes.constData()), size_t(bytes.size()));
    return 0;
}
} // namespace

int main(int argc, char** argv)
{
    int failures = 0;
    int count = 0;
    for (int i = 1; i < argc; ++i) {
        QFileInfo info(QString::fromLocal8Bit(argv[i]));
        if (info.isDir()) {
            for (const QFileInfo& entry : QDir(info.filePath()).entryInfoList(QDir::Files, QDir::Name)) {
                failures += Replay(entry.filePath());
                ++count;
            }
        } else {
            failures += Replay(info.filePath());
            ++count;
        }
    }
    fprintf(stderr, "replayed %d inputs\n", count);
    return failures ? 1 : 0;
}
