#include "TestPrint.h"
#include "SXMLFile.h"
#include "SXMLUtil.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTextStream>
#include <gtest/gtest.h>

#include <string>

namespace {
// Reads a document from text; the result and the error text go to `ok` and `error`.
struct Document {
  explicit Document(const std::string& text) : itsText(QString::fromStdString(text)), itsStream(&itsText), itsFile(&itsStream) {
    ok = itsFile.Read(error);
  }
  SXMLElement* Root() { return itsFile.GetRoot(); }
  std::string Written() const { return itsFile.Text().data(); }

  QString itsText;
  QTextStream itsStream;
  SXMLFile itsFile;
  bool ok = false;
  SString error;
};

SXMLElement* Child(const SXMLElement* element, size_t i) { return static_cast<SXMLElement*>(element->GetChildren().at(i)); }

std::string Value(const SXMLElement* element, const char* name) {
  const SXMLAttribute* attribute = element ? element->GetAttribute(name) : nullptr;
  return attribute ? attribute->GetValue().data() : "<none>";
}

const char* const kProlog = "<?xml version=\"1.0\" standalone=\"yes\"?>\n";

// Comments, data, attributes with entities, self-closing and single-line elements, blank
// lines and the indentation in front of tags: all of it comes back as it stood.
const char* const kHandWritten =
    "<?xml version=\"1.0\" standalone=\"yes\"?>\n"
    "\n"
    "<!-- materials of a test project -->\n"
    "<Project name=\"demo\" version=\"2\">\n"
    "  <!-- the first brick -->\n"
    "  <brick_mat name=\"Air\" type=\"dielectric\">\n"
    "    <Er>1.0</Er>\n"
    "    <Loss>0</Loss>\n"
    "  </brick_mat>\n"
    "\n"
    "  <brick_mat name=\"R&amp;D &lt;lab&gt;\" type=\"metal\"/>\n"
    "  <Note>first line\n"
    "    second line\n"
    "  </Note>\n"
    "  <Pair><Left x=\"1\"/><Right>R&amp;D</Right></Pair>\n"
    "  <Sub>\n"
    "    <Deep><Target id=\"7\"/></Deep>\n"
    "  </Sub>\n"
    "</Project>\n";
}  // namespace

TEST(XMLDocument, HandWrittenDocumentsWriteBackByteForByte) {
  const char* const documents[] = {
      kHandWritten,
      "<?xml version=\"1.0\"?>\n<EmSolver>\n    <Iris x=\"1\"/>\n</EmSolver>\n",
      // No declaration, and a root on one line.
      "<a><b c=\"d\"/>text</a>\n",
      // A comment behind an element on its line, and one over two lines.
      "<?xml version=\"1.0\"?>\n<a>\n  <b c=\"1\"/> <!-- one -->\n  <!-- two\n  lines -->\n</a>\n",
      // Data over lines, with a blank line in it, ending in front of a tag.
      "<a>\n  alpha\n\n  beta <b c=\"1\"/>\n</a>\n",
      // Blank lines in front of an end tag, and a declaration behind the first.
      "<?xml version=\"1.0\"?>\n<!DOCTYPE a>\n\n<a>\n  <b>\n    <c d=\"e\"/>\n\n  </b>\n</a>\n",
  };
  for (const char* text : documents) {
    Document document(text);
    EXPECT_TRUE(document.ok) << text;
    EXPECT_TRUE(document.error.isEmpty()) << text;
    EXPECT_EQ(document.Written(), text);
  }
}

TEST(XMLDocument, ReadTreeHoldsElementsAttributesAndLayout) {
  Document document(kHandWritten);
  ASSERT_TRUE(document.ok);
  EXPECT_EQ(std::string(document.itsFile.GetProlog().data()),
            "<?xml version=\"1.0\" standalone=\"yes\"?>\n\n<!-- materials of a test project -->");
  const SXMLElement* root = document.Root();
  EXPECT_EQ(root->GetName(), SString("Project"));
  EXPECT_EQ(root->GetLine(), 4);
  EXPECT_EQ(Value(root, "NAME"), "demo");
  EXPECT_EQ(Value(root, "version"), "2");
  ASSERT_EQ(root->GetChildren().entries(), 6u);
  EXPECT_STREQ(Child(root, 0)->GetKindName(), "COMMENT");
  EXPECT_EQ(Child(root, 0)->GetText(), SString("  <!-- the first brick -->\n"));

  const SXMLElement* air = root->FindChild("BRICK_MAT");
  ASSERT_EQ(air, Child(root, 1));
  EXPECT_EQ(air->GetText(), SString("  "));
  EXPECT_FALSE(air->IsSingleLine());
  EXPECT_TRUE(air->HasNewlineAfterStart());
  EXPECT_EQ(air->FindChild("Er")->GetData(), SString("1.0"));
  EXPECT_TRUE(air->FindChild("Er")->IsSingleLine());

  const SXMLElement* lab = Child(root, 2);
  EXPECT_EQ(lab->GetLeadingLines(), SString("\n"));
  EXPECT_EQ(Value(lab, "name"), "R&D <lab>");
  EXPECT_TRUE(lab->GetChildren().isEmpty());

  EXPECT_EQ(root->FindChild("Note")->GetData(), SString("first line\n    second line\n"));
  EXPECT_EQ(root->FindChild("Target"), nullptr);
  EXPECT_EQ(Value(root->FindDeep("target"), "id"), "7");
  EXPECT_EQ(root->FindDeep("Right")->GetData(), SString("R&D"));
  EXPECT_FALSE(root->FindDeep("Right")->HasNewlineAfterEnd());
  EXPECT_EQ(root->FindDeep("Missing"), nullptr);
}

TEST(XMLDocument, AttributesEntitiesAndTagsAreTakenTolerantly) {
  const struct {
    const char* input;
    const char* written;
  } rows[] = {
      {"<a x=1 y='2'/>", "<a x=\"1\" y=\"2\"/>"},
      {"<a name=\"x\" NAME=\"y\"/>", "<a name=\"y\"/>"},
      {"<t>it's \"q\" &amp; &#65;</t>", "<t>it&apos;s &quot;q&quot; &amp; &amp;#65;</t>"},
      {"<a v=\"&quot;&amp;lt;\"/>", "<a v=\"&quot;&amp;lt;\"/>"},
      {"<a x=\"1\"\n   y=\"2\">text</a>", "<a x=\"1\" y=\"2\">text</a>"},
      {"<Er>1</ER>", "<Er>1</Er>"},
      // The writer takes the short form only for an element with attributes.
      {"<a><c/></a>", "<a><c></c></a>"},
      {"<a x=\"1\"></a>", "<a x=\"1\"/>"},
      {"<a><!-- kept --></a>", "<a><!-- kept --></a>"},
      // An end tag closes what is open inside it; one that closes nothing is dropped.
      {"<a>\n<b>\n</c>\n</a>", "<a>\n<b>\n</b>\n</a>"},
      {"</x>\n<a k=\"v\"/>", "<a k=\"v\"/>"},
      // Whatever stands behind the root is not part of the document.
      {"<a k=\"v\"/>\n<b k=\"v\"/>", "<a k=\"v\"/>"},
  };
  for (const auto& row : rows) {
    Document document(std::string(kProlog) + row.input + "\n");
    EXPECT_TRUE(document.ok) << row.input;
    EXPECT_EQ(document.Written(), std::string(kProlog) + row.written + "\n") << row.input;
  }
}

TEST(XMLDocument, ReadEdgeCases) {
  QTemporaryDir directory;
  SString error = "stale";
  SXMLFile missing(SString(directory.filePath("missing.xml")));
  EXPECT_FALSE(missing.Read(error));
  EXPECT_EQ(error, SString("Unable to open file."));
  SXMLFile unnamed;
  EXPECT_FALSE(unnamed.Read(error));

  Document empty("");
  EXPECT_TRUE(empty.ok);
  EXPECT_EQ(empty.error, SString("Unable to open file."));

  Document prologOnly(kProlog);
  EXPECT_TRUE(prologOnly.ok);
  EXPECT_TRUE(prologOnly.error.isEmpty());
  EXPECT_TRUE(prologOnly.Root()->GetName().isEmpty());
  EXPECT_TRUE(prologOnly.Root()->GetChildren().isEmpty());
  EXPECT_EQ(prologOnly.Written(), kProlog);

  // A file that ends with elements open gives what was read, closed on writing.
  Document open(std::string(kProlog) + "<a>\n  <b>\n    <c x=\"1\"/>\n");
  EXPECT_TRUE(open.ok);
  EXPECT_EQ(Value(open.Root()->FindDeep("c"), "x"), "1");
  EXPECT_EQ(open.Written(), std::string(kProlog) + "<a>\n  <b>\n    <c x=\"1\"/>\n  </b>\n</a>\n");

  // A second read starts from nothing.
  QFile file(directory.filePath("twice.xml"));
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write("<?xml version=\"1.0\"?>\n<r>\n<a k=\"1\"/>\n</r>\n");
  file.close();
  SXMLFile twice(SString(directory.filePath("twice.xml")));
  ASSERT_TRUE(twice.Read(error));
  ASSERT_TRUE(twice.Read(error));
  EXPECT_EQ(twice.GetRoot()->GetChildren().entries(), 1u);
}

// Broken markup gives some tree and never a crash; the tree then writes the same text
// however often it is read and written again.
TEST(XMLDocument, MalformedInputEndsCleanly) {
  const char* const inputs[] = {
      "<a",
      "<a>text <b",
      "<a>\n<b x=\"1>\n<c>",
      "<a><!-- never closed\n<b/>",
      "<?xml never closed\n<a/>",
      "<a x=\"unterminated/>\n</a>",
      "<a>< b>< /b></a>",
      "<>\n</>",
      "plain text\nover lines",
      "<a>&amp;&lt;&bogus;</a></a></a>",
      "\n\n   \n",
      "<a/ b>x</a/>",
      "<a>\r\n  <b k='1'/> \r\n</a>\r\n",
      "</x><!--c-->\n<a/>",
      "<a x=\"1/\"/><b a=b=c/><c =\"\"/>",
      "<a><A></a>",
      "\xEF\xBB\xBF<a k='1'>\xFF\xFE</a>",
      "<a><b></a>\n<c>",
      "<r>\n  <a>\n    text\n</r>",
  };
  for (const char* input : inputs) {
    Document first(input);
    EXPECT_TRUE(first.ok) << input;
    Document second(first.Written());
    EXPECT_TRUE(second.ok) << input;
    EXPECT_EQ(second.Written(), first.Written()) << input;
  }
}

// Every sequence of three pieces of markup, whole or broken: what the tree writes reads
// back as a tree that writes the same text.
TEST(XMLDocument, WrittenTextIsStableForPiecesInAnyOrder) {
  const char* const pieces[] = {"<a>",   "</a>", "<b k='1'/>", "text", "\n",  "\n\n", "  ",   "<!--c",
                                "-->",   "<?p?>", "&amp;",     "<a",   ">",    "x=\"1", "</b>", "<c/>",
                                "\r\n", "/>",   "<!DOCTYPE", "</",   "<A>",  "=",     "\"",  "<![CDATA["};
  for (const char* one : pieces)
    for (const char* two : pieces)
      for (const char* three : pieces) {
        const std::string input = std::string(one) + two + three;
        Document first(input);
        Document second(first.Written());
        ASSERT_EQ(second.Written(), first.Written()) << input;
      }
}

TEST(XMLDocument, NestingIsCappedWithAnErrorText) {
  const auto nested = [](int depth) {
    std::string text = kProlog;
    for (int i = 0; i < depth; ++i) text += "<e>";
    return text + "\n";
  };
  Document deepest(nested(SXMLElement::kMaxDepth + 1));
  EXPECT_TRUE(deepest.ok) << deepest.error.data();

  Document tooDeep(nested(100000));
  EXPECT_FALSE(tooDeep.ok);
  EXPECT_EQ(tooDeep.error, SString("Elements nested deeper than 200 levels at line 2."));
  // What was read up to there stays usable.
  EXPECT_NE(tooDeep.Root()->FindDeep("e"), nullptr);
}

TEST(XMLDocument, BuiltTreeWritesOneElementALine) {
  QTemporaryDir directory;
  const SString path(directory.filePath("materials.xml"));
  SXMLUtil xml;
  xml.SetRoot("materials", path);
  xml.OpenElement("brick_mat", "name", "Air");
  xml.SetAttribute("type", "dielectric");
  xml.SetAttribute("NAME", "Air & more");
  xml.AddDataElement("Er", 1.0);
  xml.AddDataElement("Tand", 0.1 + 0.2);
  xml.AddDataElement("Layers", 3);
  xml.AddDataElement("Lossless", true);
  xml.AddDataElement("Thick", false);
  xml.AddDataElement("Note", "R&D");
  xml.AddDataElement("Unit", "kind", "length", "um");
  EXPECT_TRUE(xml.CloseElement());
  xml.OpenElement("Empty");
  EXPECT_TRUE(xml.CloseElement());
  xml.OpenElement("NeverClosed");
  ASSERT_TRUE(xml.Save()) << xml.GetFile().GetWriteError().data();

  const std::string expected =
      "<?xml version=\"1.0\" standalone=\"yes\"?>\n"
      "<materials>\n"
      "<brick_mat name=\"Air &amp; more\" type=\"dielectric\">\n"
      "<Er>1</Er>\n"
      "<Tand>0.3</Tand>\n"
      "<Layers>3</Layers>\n"
      "<Lossless>1</Lossless>\n"
      "<Thick>0</Thick>\n"
      "<Note>R&amp;D</Note>\n"
      "<Unit kind=\"length\">um</Unit>\n"
      "</brick_mat>\n"
      "<Empty></Empty>\n"
      "</materials>\n";
  QFile file(path.qstring());
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  EXPECT_EQ(file.readAll().toStdString(), expected);
  EXPECT_EQ(QDir(directory.path()).entryList(QDir::Files), QStringList{"materials.xml"});

  SXMLFile again(path);
  SString error;
  ASSERT_TRUE(again.Read(error));
  EXPECT_EQ(std::string(again.Text().data()), expected);
  EXPECT_EQ(again.GetRoot()->FindDeep("Tand")->GetData(), SString("0.3"));
}

TEST(XMLDocument, DoublesFitTheFieldWidthWithoutTrailingZeros) {
  const struct {
    int width;
    double value;
    const char* text;
  } rows[] = {{16, 1.0, "1"},       {16, 2.50, "2.5"},   {16, -1234.5, "-1234.5"}, {16, 1e-7, "1e-07"},
              {16, 1e20, "1e+20"},  {16, 0.1, "0.1"},    {3, 3.14159, "3.14"},     {17, 0.1 + 0.2, "0.30000000000000004"},
              {40, 0.1, "0.10000000000000001"}};
  for (const auto& row : rows) {
    SXMLUtil xml;
    xml.SetFieldWidth(row.width);
    EXPECT_EQ(std::string(xml.FormatDouble(row.value).data()), row.text) << row.value;
  }
}

TEST(XMLDocument, WriteReplacesTheFileOnlyWhenComplete) {
  QTemporaryDir directory;
  SXMLFile nowhere(SString(directory.filePath("no/such/dir.xml")), "r");
  EXPECT_FALSE(nowhere.Write());
  EXPECT_FALSE(nowhere.GetWriteError().isEmpty());
  SXMLFile unnamed;
  EXPECT_FALSE(unnamed.Write());
  EXPECT_EQ(QDir(directory.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList());
}

TEST(XMLDocument, ElementOperations) {
  SXMLElement element("a");
  element.SetAttribute("k", "1");
  element.SetAttribute("K", "2");
  ASSERT_EQ(element.GetAttributes().entries(), 1u);
  EXPECT_EQ(Value(&element, "k"), "2");
  EXPECT_EQ(element.GetAttribute("other"), nullptr);

  SXMLElement* child = new SXMLElement("b");
  child->AddData("x < y");
  element.AddChild(child);
  EXPECT_EQ(child->GetParent(), &element);
  EXPECT_TRUE(child->IsSingleLine());

  SXMLElement* twin = static_cast<SXMLElement*>(element.copy());
  child->SetAttribute("changed", "yes");
  QString original, copied;
  QTextStream out(&original), copyOut(&copied);
  element.Write(out);
  twin->Write(copyOut);
  out.flush();
  copyOut.flush();
  EXPECT_EQ(original.toStdString(), "<a k=\"2\">\n<b changed=\"yes\">x &lt; y</b>\n</a>\n");
  EXPECT_EQ(copied.toStdString(), "<a k=\"2\">\n<b>x &lt; y</b>\n</a>\n");
  EXPECT_EQ(static_cast<SXMLElement*>(twin->GetChildren().first())->GetParent(), twin);
  delete twin;

  SXMLElement kinds;
  EXPECT_STREQ(kinds.GetKindName(), "STANDARD");
  EXPECT_EQ(SXMLElement::Escape("&<>'\""), SString("&amp;&lt;&gt;&apos;&quot;"));
  EXPECT_EQ(SXMLElement::Unescape("&amp;lt;&quot;&apos;&gt;"), SString("&lt;\"'>"));
}

namespace {
// Notes the elements in the order the reader finishes them.
class SListingXMLFile : public SXMLFile {
public:
  using SXMLFile::SXMLFile;
  std::string itsDone;

protected:
  void ElementDone(SXMLElement* element) override { itsDone += std::string(element->GetName().data()) + " "; }
};
}  // namespace

TEST(XMLDocument, TheFileHearsOfEachElementWhenItIsComplete) {
  QString text = "<?xml version=\"1.0\"?>\n<r>\n  <a k=\"1\"/>\n  <b>x<!-- c --></b>\n  <open>\n";
  QTextStream stream(&text);
  SListingXMLFile file(&stream);
  SString error;
  ASSERT_TRUE(file.Read(error));
  EXPECT_EQ(file.itsDone, "a b open r ");
}
