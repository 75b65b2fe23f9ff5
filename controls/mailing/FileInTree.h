// A sent mail filed in its dossier by the tree control: where no binder control is around it, or
// the binder shows another dossier by now.
#pragma once

namespace kavidex::platform {
struct Workstation;
}

namespace kavidex::controls {

class ctrlTree;
struct SentMail;

// Shown in the tree where that is of the same dossier. The user is told what goes wrong.
void FileInTree(const platform::Workstation& workstation, ctrlTree& tree, const SentMail& mail);

} // namespace kavidex::controls
