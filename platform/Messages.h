// Message boxes. Texts arrive translated; the Windows side owns the box to the host's window.
#pragma once

#include <string>

namespace kavidex::platform {

enum class Buttons { Ok, OkCancel, YesNo, YesNoCancel };
enum class Icon { None, Information, Question, Exclamation, Critical };
enum class Answer { Ok, Cancel, Yes, No };

struct Message {
    std::string text;
    std::string caption = "Kavidex";
    Buttons buttons = Buttons::Ok;
    Icon icon = Icon::None;
};

class Messages {
public:
    virtual ~Messages() = default;
    virtual Answer Show(const Message& message) = 0;
};

} // namespace kavidex::platform
