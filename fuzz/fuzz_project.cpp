// Arbitrary text as a project file: every block reader, then a write of
// what was read.

#include <QString>
#include <QTextStream>

#include "FuzzInput.h"
#include "SCommentedFile.h"
#include "SProject.h"
#include "SProjectFormat.h"
#include "SProjectStream.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    FuzzSetup();
    QString text = QString::fromUtf8(reinterpret_cast<const char*>(data), int(size));
    for (int type = 0; type < 7; type += 5) {
        try {
            SProject project;
            project.SetFileName("/nonexistent/fuzz.vel");
            project.SetProjectType(type);
            QTextStream stream(&text);
            SCommentedFile file(&stream);
            file.SetCommentEscape("<");
            file.NextLine();
            if (project.ReadStream(file, 0)) {
                SProjectFormat::SetWriteFormat(SProjectFormat::kCurrent);
                SProjectStream out;
                project.Write(out);
            }
        } catch (int) {
            // A fatal program error.
        }
    }
    return 0;
}
