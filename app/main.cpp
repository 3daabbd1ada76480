#include <QCoreApplication>
#include <cstdio>
#include <strings.h>

#include "SGdsApp.h"
#include "SFileNameCodec.h"
#include "SGdsDebug.h"
#include "SProgress.h"
#include "SVeloraDirectoryInstance.h"

#ifdef GDS_JEMALLOC
// Read by the allocator before main: huge pages for the heap.
extern "C" {
const char* malloc_conf = "thp:always,metadata_thp:always";
}
#endif

namespace {
const char* const kVersion = "17.52.1";
}

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    SInstallFileNameCodec();
    QCoreApplication::setOrganizationName("Velora");
    QCoreApplication::setApplicationName("gds");
    QCoreApplication::setApplicationVersion(kVersion);
    SVeloraDirectoryInstance::CreateGlobal(argv[0]);

    if (argc > 1 && (strcasecmp(argv[1], "-ver") == 0 || strcasecmp(argv[1], "-version") == 0)) {
        printf("Version: %s\n", kVersion);
        return 0;
    }

    bool ok;
    {
        SGdsApp app;
        ok = app.Run(argc, argv);
        Progress().Disable();
#ifdef GDS_LEAVE_LAYOUT_AT_EXIT
        // Freeing millions of polygons one by one takes longer than the exit that frees them all.
        app.LeaveLayoutAtExit();
#endif
        if (!ok && app.IsConverting())
            GdsError("Conversion failed\n");
        else if (ok && GdsDebug().GetLevel() > 3)
            GdsDebug().Print("program ended\n");
    }
    return ok ? 0 : 1;
}
