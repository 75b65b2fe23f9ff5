// How a picture is named where no window is at hand: rows of lists, nodes of trees, fields of
// forms.
#pragma once

#include <string>
#include <string_view>

namespace kavidex::controls {

// A key is the name of a picture of our own ("closedtab") or a full stop and a file extension in
// lower case (".pdf"): the system's icon of that type, else our own of its family, else "unknown".
std::string FileIconKey(std::string_view extension);

// The key for an item type: folders and notes have pictures of their own.
std::string ItemIconKey(std::string_view itemType);

// Our own picture for a file type: "pdf", "word", "sheet", "slides", "mail", "picture", "text",
// "archive", "web"; empty when the type belongs to no family.
std::string_view FamilyOf(std::string_view extension);

} // namespace kavidex::controls
