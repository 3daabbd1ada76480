#include "ProjectTestSupport.h"

#include <random>
#include <sstream>
#include <vector>

namespace {

const char* const kSample = R"(FTYP VELPROJ 17 ! Velora Project File
VER 17.52
HEADER
DAT 01/02/2020 10:11:12
BUILT_BY_CREATED "a tool" 3.1 01/02/2020 10:11:12
MDATE 03/04/2021 05:06:07
ANN note
END HEADER
DIM
LNG UM
FREQ MHZ
END DIM
VAR
W = 10
END VAR
FREQ
SWEEP 1 10 1
AUTO NET=a S21 N=5 MAX=50 1 2 0.01
LIST 1 2
DC_FREQ MAN 5
END FREQ
CONTROL
ABS
OPTIONS -x
SUBSPLAM Y 20
EDGECHECK Y 2 TECHLAY
CFMAX Y 3
RES_FREQS Y 1 2
TARG_ABS 100
END CONTROL
GEO
BOX 1 100 100 20 20 20 0
      0 1 1 0 0 0 0
      0 1 1 0 0 0 0
NUM 0
END GEO
QSG
IMPORT YES
END QSG
3DOPTIONS
GLOBAL 2
LAYERS
1
END
END 3DOPTIONS
SMDFILES
1 "a.s2p"
END SMDFILES
)";

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

}  // namespace

// Damaged projects give messages or partial reads, never a crash (the sanitizer build
// checks the memory side): lines dropped, repeated, cut, swapped, or given stray tokens.
TEST_F(ProjectTest, DamagedProjectsNeverCrashTheReader) {
  const std::vector<std::string> lines = Lines(kSample);
  const char* const stray[] = {"END", "END GEO", "\"", "&", "!<", "!", "-1", "1e999", "UNK", "LAYERS", "ALL 3",
                               "FTYP", "HEADER", "\xc3\xa9", "N=", "NET=", "Y", "\t", "END X"};
  std::mt19937 random(7);
  int failedReads = 0;
  for (int round = 0; round < 1500; ++round) {
    std::vector<std::string> damaged = lines;
    const int edits = 1 + static_cast<int>(random() % 4);
    for (int e = 0; e < edits && !damaged.empty(); ++e) {
      const size_t at = random() % damaged.size();
      switch (random() % 5) {
        case 0:
          damaged.erase(damaged.begin() + static_cast<long>(at));
          break;
        case 1:
          damaged.insert(damaged.begin() + static_cast<long>(at), damaged[random() % damaged.size()]);
          break;
        case 2:
          damaged[at] = damaged[at].substr(0, random() % (damaged[at].size() + 1));
          break;
        case 3:
          std::swap(damaged[at], damaged[random() % damaged.size()]);
          break;
        default:
          damaged[at] += std::string(" ") + stray[random() % (sizeof stray / sizeof stray[0])];
          break;
      }
    }
    std::string text;
    for (const std::string& line : damaged) text += line + "\n";
    SProject project;
    const bool ok = ReadText(project, text, "test.vel", static_cast<int>(random() % 7));
    if (!ok) {
      ++failedReads;
      EXPECT_TRUE(project.GetErrors().HasErrors()) << text;
      EXPECT_GT(project.GetErrors().Count(), 0u) << text;
    }
    WriteText(project);
  }
  // The damage is meant to reach the readers' error paths.
  EXPECT_GT(failedReads, 50);
}
