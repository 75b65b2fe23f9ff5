// The dialog "Zoeken": a text that the description of an item contains.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "controls/forms/Form.h"

namespace kavidex::controls {

class frmFind {
public:
    // `find` looks for the text and tells the user when there is none: the dialog stays then.
    frmFind(const platform::Workstation& workstation, std::shared_ptr<Translator> translator,
            std::string_view text, std::function<bool(const std::string&)> find);

    forms::Form& Form() { return lclForm; }

private:
    forms::Form lclForm;
};

} // namespace kavidex::controls
