// The ports of the forms: what shows one, and what a control's logic asks to have one shown.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kavidex::controls::forms {

class Field;
class Form;
enum class Aspect;

// Shows a form's state as it is and hands the user's acts to the form.
class FormView {
public:
    virtual ~FormView() = default;
    virtual void Show(const Field& field, Aspect aspect) = 0;
    virtual void ShowItem(const Field& field, std::int32_t id) = 0; // one item changed
    virtual void ShowCaption() = 0;
    virtual void EditItem(const Field& field, std::int32_t id, int column) = 0;
    virtual void Focus(const Field& field) = 0;
    virtual void Close() = 0; // the form has a result
};

class FormPresenter {
public:
    virtual ~FormPresenter() = default;

    // Shows the form before the window that this presenter belongs to, which takes no input
    // meanwhile, until the form is closed; its result: false when it was cancelled or no window
    // could be made, which the log tells.
    virtual bool ShowModal(Form& form) = 0;
    // Shows it beside its window, and returns at once; the form must outlive it, and closes it.
    virtual bool ShowModeless(Form& form) = 0;

    // The user's choice, nothing when cancelled. `start` may be empty.
    virtual std::optional<std::string> ChooseFolder(std::string_view caption,
                                                    std::string_view start) = 0;
    // `pattern` as "*.mdb;*.kdb"; `save` for a file that need not be there.
    virtual std::optional<std::string> ChooseFile(std::string_view caption, std::string_view start,
                                                  std::string_view pattern, bool save) = 0;
    // Existing files, as many as the user likes; `start` is a folder.
    virtual std::vector<std::string> ChooseFiles(std::string_view caption,
                                                 std::string_view start) = 0;
};

} // namespace kavidex::controls::forms
