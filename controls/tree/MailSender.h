// What sends documents by mail, as the tree asks for it. The entries for it stay out of sight until
// there is one.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "data/Connection.h"

namespace kavidex::model {
class clsItem;
class clsTree;
} // namespace kavidex::model

namespace kavidex::controls {

class OperationLock;
class Translator;

struct MailOrder {
    std::string address; // of the one it goes to; may be empty
    std::vector<std::shared_ptr<model::clsItem>> documents;
    bool asPdf = false; // every image that can be goes as a PDF file, not only scanned pages
    bool marks = false; // the marks on images go with them

    data::ConnectionPtr connection{};
    OperationLock* lock = nullptr; // outlives the mail
    std::shared_ptr<Translator> translator{};
};

enum class MailOutcome {
    Sent,
    NotSent,     // the user closed it, or the mail program did not tell
    LogonFailed, // the mail system knows nobody
};

struct MailResult {
    MailOutcome outcome = MailOutcome::NotSent;
    std::string sent;                 // the mail as it was sent, a .msg file; empty: not found
    std::shared_ptr<void> files = {}; // what was made for the mail, `sent` too, goes with this
};

// The dossier that it was sent from: another one may be open by now.
struct SentMail {
    std::string path;
    std::shared_ptr<model::clsTree> dossier;
    std::int32_t folder = 0;
};

class MailSender {
public:
    virtual ~MailSender() = default;
    // Has the user send it. Throws platform::Error when that fails.
    virtual MailResult Send(const MailOrder& order) = 0;
    // Files what was sent; the user is told what goes wrong.
    virtual void File(const SentMail& mail) = 0;
};

} // namespace kavidex::controls
