// The port to a mail program that is driven by automation: a new mail that the user sees and sends,
// and the folder where what was sent can be found. Every call throws platform::Error when the
// program is not there, refuses or does not answer.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace kavidex::mail {

// The property that tells our mail from the others in the folder of sent ones.
inline constexpr std::string_view uniqueIndex = "UniqueIndex";

class SentItem {
public:
    virtual ~SentItem() = default;
    // Of a user property that is a text; null when the item has none of that name.
    virtual std::optional<std::string> UserProperty(std::string_view name) = 0;
    virtual std::string Subject() = 0;
    virtual void SaveAs(std::string_view path) = 0;
};

class SentFolder {
public:
    virtual ~SentFolder() = default;
    virtual std::int32_t Count() = 0; // as it is now
    // By its place, from 1.
    virtual std::unique_ptr<SentItem> Item(std::int32_t place) = 0;
    // Goes on from there as the program orders them; null behind the last.
    virtual std::unique_ptr<SentItem> Next() = 0;
};

class NewMail {
public:
    virtual ~NewMail() = default;
    virtual void AddRecipient(std::string_view address) = 0;
    virtual void SetSubject(std::string_view subject) = 0;
    virtual void SetBodyFormat(int format) = 0;
    virtual void SetBody(std::string_view body) = 0;
    virtual void Attach(std::string_view path, std::string_view displayName) = 0;
    virtual std::unique_ptr<SentFolder> SaveSentMessageFolder() = 0;
    virtual void AddUserProperty(std::string_view name, std::string_view value) = 0;
    virtual void Display() = 0; // until the user has sent or closed it
    virtual bool Sent() = 0;
};

class MailAutomation {
public:
    virtual ~MailAutomation() = default;
    virtual std::unique_ptr<NewMail> CreateMail() = 0;
};

} // namespace kavidex::mail
