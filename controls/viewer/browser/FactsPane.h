// What is known of a document that cannot be shown here, with a button that opens it in its default
// program: a form. The views share one.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "controls/forms/Form.h"
#include "controls/viewer/DocumentView.h"

namespace kavidex::controls {

class FactsPane {
public:
    explicit FactsPane(ViewerFrame& frame);

    // `notice` says why it is not shown, as a key of the translations.
    void Show(const ShownDocument& document, std::string_view notice);
    void SurroundingsChanged();
    StatusTexts Status() const; // the hint that a double click opens the document
    // In its default program; what may run something only where the dossier takes such documents,
    // and when the user insists. False: it was not opened.
    bool OpenDefault(const ShownDocument& document);
    std::function<bool(std::string_view type)> acceptsType{}; // null: every one
    forms::Form& Form() { return lclForm; }

private:
    ViewerFrame& lclFrame;
    ShownDocument lclDocument;
    std::string lclNotice;
    forms::Form lclForm;
};

// "512 bytes", "12,3 kB", "4,0 MB": decimal comma, steps of 1024.
std::string SizeText(std::uint64_t bytes);

} // namespace kavidex::controls
