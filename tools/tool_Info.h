// odb info: what a database holds, as a screenful of text or as JSON, from its metadata only
// (names, counts and the descriptions of the field blocks, never their values).
#ifndef TOOL_INFO_H
#define TOOL_INFO_H

#include <ostream>
#include <string>

// Writes the summary of the database at `path` to `out`; throws tool_Error for a file that
// cannot be opened.
void tool_Info(const std::string& path, bool json, std::ostream& out);

#endif
