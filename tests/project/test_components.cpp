// Components: SMD entries of GEO with their ports, and the files of SMDFILES bound to them.
#include "ProjectTestSupport.h"

#include "SCircuit.h"
#include "SGeometryBlock.h"
#include "SLevel.h"
#include "SSMDBlock.h"
#include "SSMDPort.h"
#include "SSMDev.h"

#include <vector>

namespace {

// A strip (id 1) on level 0 for planes to link to.
const char* const kStrip =
    "NUM 1\n"
    "0 5 -1 N 1 1 1 100 100 0 0 0 Y\n"
    "0 0\n10 0\n10 5\n0 5\n0 0\nEND\n";

// Every line form of a component, written as this program writes it.
const char* const kComponents =
    "SMD 0 \"R 1\"\n"
    "ID 3\n"
    "GNDREF BOX ABOVE\n"
    "DRP1 LEFT FIX 5 1\n"
    "SBOX 10 20 30 40\n"
    "PBSHW Y\n"
    "PBOX 11 21 29 39\n"
    "PKG 20 10 5\n"
    "LPOS 15 25\n"
    "TYPE IDEAL RES \"W*2\"\n"
    "SMDP 0 10 30 L 1 1 FIX 2 0.5\n"
    "EXSMDP\n"
    "GNDREF POLY BELOW\n"
    "TERMW CUST 3\n"
    "END EXSMDP\n"
    "SMDP 0 30 30 D 2 2 LINK 0\n"
    "POLY 1 1\n"
    "2\n"
    "EXSMDP\n"
    "GNDREF AUTO\n"
    "TERMW FEED\n"
    "END EXSMDP\n"
    "END\n"
    "SMD 1 \"C2\"\n"
    "ID 4\n"
    "GNDREF AUTO\n"
    "SBOX 0 0 4 2\n"
    "PBSHW N\n"
    "LPOS 0 0\n"
    "TYPE IDEAL CAP 1.5\n"
    "SMDP 1 0 1 T 3 1 \n"
    "EXSMDP\n"
    "GNDREF AUTO\n"
    "TERMW FEED\n"
    "END EXSMDP\n"
    "END\n";

class ComponentsTest : public GeoTest {
protected:
  static std::string Dump(const std::string& body) { return body; }
};

TEST_F(ComponentsTest, DumpForNow) {
  const std::string text = Project(std::string(kTwoLevelStack) + "VALVAR W LNG 10 \"\"\nLORGN 0 160 U\n" + kComponents + kStrip);
  SProject project;
  ASSERT_TRUE(ReadText(project, text)) << project.GetErrors().ErrorText().data();
  std::cout << WriteText(project);
}

}  // namespace
