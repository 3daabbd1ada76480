// Message texts, read at start-up from the resource directory.
// Lines: "#define NAME expression" (numbers and earlier names joined by + or -),
// "#include file", and "string NUMBER-or-NAME text". Inside a text \n is a line end,
// \t a tab and \" a double quote; "//" outside quotes starts a comment.
// A text that is a detail is a printf format: its conversions must match what the
// caller passes, so a text only converts the arguments its caller is known to give.
//
// Messages of the translator.

#define GDS_BASE 5930
#define MSG_UNKNOWN_OPTION GDS_BASE
#define MSG_UNKNOWN_OPTION_TEXT (GDS_BASE+1)

// Command line
string MSG_UNKNOWN_OPTION "Unknown command line option"
string MSG_UNKNOWN_OPTION_TEXT "The option %s is not known and was ignored."

// Layer file
string 7071 "Unable to open the layer file %s"
