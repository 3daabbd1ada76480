// Message texts, read at start-up from the resource directory.
// Lines: "#define NAME expression" (numbers and earlier names joined by + or -),
// "#include file", and "string NUMBER-or-NAME text". Inside a text \n is a line end,
// \t a tab and \" a double quote; "//" outside quotes starts a comment.
// A text that is a detail is a printf format: its conversions must match what the
// caller passes, so a text only converts the arguments its caller is known to give.
//
// Messages of the foundation library.

#define UTIL_BASE 5000
#define MSG_ERROR_HEADING (UTIL_BASE+900)
#define MSG_WARNING_HEADING (UTIL_BASE+600)
#define MSG_PROJECT_TITLE (UTIL_BASE+602)
#define MSG_BAD_LINE (UTIL_BASE+910)
#define MSG_BAD_LINE_TEXT (MSG_BAD_LINE+1)
#define MSG_TYPE_MISMATCH (UTIL_BASE+914)
#define MSG_TYPE_MISMATCH_TEXT (MSG_TYPE_MISMATCH+1)

// Headings of numbered reports
string MSG_ERROR_HEADING "Error "
string MSG_WARNING_HEADING "Warning "

// File failures: texts (no arguments)
string 5001 "The file could not be opened for reading."
string 5002 "The file could not be opened for writing."
string 5003 "The file could not be closed."
string 5005 "A file operation failed."
string 5006 "The file could not be found."
string 5008 "The directory of the file could not be found."
string 5044 "The file could not be read to the end."

// File failures: headers (no arguments)
string 5850 "File not found"
string 5855 "File error"
string 5860 "File access error"
string 5868 "File read error"

// File failures: the name, with and without detail, and the closing line
string 5861 "File: %s\nReason: %s"
string 5863 "File: %s"
string 5862 "Please check the file name and its permissions."

// Project and file library (arguments as noted)
string 5318 "A file named in an equation does not exist: %s"
string 5412 "No error."
string MSG_PROJECT_TITLE "Project file problem"
string 5670 "Unable to write the file %s"
string 5681 "Unable to read the material or technology file %s"
string 5740 "Unable to create or remove project data: %s"
string 5760 "The rule or equation could not be used: %s"
string 5770 "Component note: %s"
string 5795 "Unable to save the custom rule file."

// Settings file errors by code (5690 to 5695 have no arguments; 5696 takes the code).
// 5690 is also the title over a material or technology file that can't be used.
string 5690 "A file could not be found or could not be read."
string 5691 "The settings file could not be created."
string 5692 "The directory of the settings file does not exist."
string 5693 "The directory of the settings file cannot be read."
string 5694 "The settings file does not exist after writing."
string 5695 "The settings file has a malformed section line."
string 5696 "Unknown settings file error %d."

// Token reader and file names
string MSG_BAD_LINE "Unreadable line in input file"
string MSG_BAD_LINE_TEXT "Line %d: %s"
string MSG_TYPE_MISMATCH "File type does not match"
string MSG_TYPE_MISMATCH_TEXT "Expected a file of type '%s' but the name has the extension '%s'."
