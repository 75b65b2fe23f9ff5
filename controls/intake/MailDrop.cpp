#include "controls/intake/MailDrop.h"

#include <exception>

#include "mail/MailClient.h"
#include "mail/MailNames.h"
#include "mail/MailSource.h"
#include "mail/SavedMail.h"
#include "platform/Error.h"
#include "platform/Files.h"
#include "platform/Log.h"
#include "platform/Shell.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::controls {

namespace {

constexpr std::string_view savedMail = ".msg";

// A free name among the user's temporary files; what no file name takes is blanked.
std::string PathFor(const platform::Workstation& machine, std::string_view name,
                    std::string_view extension) {
    const std::string whole = std::string(name) + std::string(extension);
    const bool taken = platform::IsFileName(whole) && mail::SafeName(whole) == whole;
    return mail::FreePath(machine.files, machine.files.TemporaryFolder(),
                          taken ? std::string(name) : mail::SafeName(name), extension);
}

std::string PathFor(const platform::Workstation& machine, const std::string& fileName) {
    const auto bare = platform::WithoutExtension(fileName);
    return PathFor(machine, bare, std::string_view(fileName).substr(bare.size()));
}

void RemoveQuietly(const platform::Workstation& machine, const std::vector<IntakeFile>& files) {
    for (const auto& file : files) {
        try {
            if (machine.files.FileExists(file.file)) machine.files.Remove(file.file);
        } catch (const std::exception& error) {
            machine.log.Write("MailDrop", error.what());
        }
    }
}

// What the mail program drives: nothing where it is another one.
mail::MailSource* Program(IntakeSite& site) {
    const auto client = mail::MailClientOf(site.Machine().shell.MailClient());
    return client == mail::MailClient::MicrosoftOutlook ? site.MailSource() : nullptr;
}

void TakeItems(IntakeSite& site, const mail::Dragged& dragged, std::vector<IntakeFile>& files,
               FilingReport& report) {
    int number = 0;
    for (const auto& item : dragged.selection) {
        ++number;
        if (item.typeName != "MailItem") {
            report.Failed(addFiles::notFiled, site.Text("$%$: niet opgeslagen", {item.subject}));
            continue;
        }
        const auto subject = item.subject.empty()
                                 ? site.Text("Leeg onderwerp") + " " + std::to_string(number)
                                 : item.subject;
        files.push_back({PathFor(site.Machine(), mail::DroppedMailName(subject, number), savedMail),
                         false, true});
        item.save(files.back().file);
    }
}

void TakeAttachments(IntakeSite& site, const mail::Dragged& dragged,
                     std::vector<IntakeFile>& files) {
    for (const auto& attachment : dragged.attachments) {
        if (!site.Ask(site.Text("Wilt u de bijlage '$%$' opnemen in het dossier?",
                                {attachment.displayName}),
                      site.Text("Bevestiging toevoegen Microsoft Outlook bijlage")))
            continue;
        files.push_back({PathFor(site.Machine(), attachment.fileName), false, true});
        attachment.save(files.back().file);
    }
}

// Fourteen digits, as lists and their order expect them.
std::string Digits(const platform::DateTime& when) {
    const auto seconds = std::to_string(when.second);
    return platform::DateNumber(when) + platform::TimeNumber(when) +
           (seconds.size() < 2 ? "0" : "") + seconds;
}

} // namespace

std::optional<std::vector<IntakeFile>> FilesOfMailProgram(IntakeSite& site, bool tell) {
    std::vector<IntakeFile> files;
    FilingReport report;
    try {
        if (auto* const program = Program(site)) {
            const auto dragged = program->WhatIsDragged();
            TakeItems(site, dragged, files, report);
            TakeAttachments(site, dragged, files);
            TellNotAdded(site, report);
            return files;
        }
    } catch (const std::exception& error) {
        site.Machine().log.Write("MailDrop", error.what());
        RemoveQuietly(site.Machine(), files);
    }
    if (tell)
        site.Tell("Uw mail moet eerst gekopieerd worden naar de verkenner of het bureaublad. "
                  "Daarna kan deze naar het dossier gesleept worden");
    return std::nullopt;
}

std::vector<IntakeFile> FilesOf(IntakeSite& site,
                                const std::vector<platform::VirtualFile>& offered) {
    std::vector<IntakeFile> files;
    FilingReport report;
    for (const auto& file : offered) {
        try {
            const auto path = PathFor(site.Machine(), platform::FileName(file.name));
            site.Machine().files.WriteAll(path, file.read());
            files.push_back({path, false, true});
        } catch (const std::exception& error) {
            site.Machine().log.Write("MailDrop", file.name + ": " + error.what());
            report.Failed(addFiles::noFile, site.Text("$%$: niet opgeslagen", {file.name}));
        }
    }
    TellNotAdded(site, report);
    return files;
}

model::MailInfo MailInfoOf(IntakeSite& site, const std::string& path) {
    return MailInfoOf(site.Machine(), Program(site), path);
}

model::MailInfo MailInfoOf(const platform::Workstation& machine, mail::MailSource* program,
                           const std::string& path) {
    auto& log = machine.log;
    const auto noted = [&](auto reading) {
        try {
            reading();
        } catch (const std::exception& error) {
            log.Write("MailInfo", error.what());
        }
    };
    mail::MailFacts facts;
    if (program) noted([&] { facts = program->FactsOf(path); });
    const bool whole = facts.receivedByName && facts.senderName && facts.sentOn &&
                       facts.receivedTime && facts.attachments;
    if (!whole)
        noted([&] {
            const auto file = mail::ReadSavedMail(path);
            const auto take = [](auto& fact, const std::string& text) {
                if (!fact && !text.empty()) fact = text;
            };
            take(facts.receivedByName, file.receivedByName);
            take(facts.receivedByName, file.to);
            take(facts.senderName, file.senderName);
            if (!facts.sentOn) facts.sentOn = file.sentOn;
            if (!facts.receivedTime) facts.receivedTime = file.receivedOn;
            if (!facts.attachments) facts.attachments = static_cast<int>(file.attachmentCount);
        });
    const auto value = [&](std::optional<std::string> read, std::string_view failure) {
        if (read) return std::move(*read);
        log.Write("MailInfo", std::string(failure) + ": " + path);
        return std::string("Not retrieved");
    };
    const auto moment = [](const auto& when, auto form) {
        return when ? std::optional(form(*when)) : std::nullopt;
    };
    model::MailInfo info;
    info.sendTo = value(facts.receivedByName, "Error retrieving SendTo");
    info.sendOn = value(moment(facts.sentOn, mail::MomentNumber), "Error retrieving SendOn");
    info.recievedFrom = value(facts.senderName, "Error retrieving RecievedFrom");
    info.recievedOn = value(moment(facts.receivedTime, Digits), "Error retrieving RecievedOn");
    if (!facts.attachments)
        log.Write("MailInfo", "Error retrieving NumberOfattatchements: " + path);
    info.numberOfAttatchements = facts.attachments.value_or(0);
    return info;
}

} // namespace kavidex::controls
