// The frame of the sample host: menu, status bar, and the binder control filling the rest.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/ControlFrame.h"
#include "host/Options.h"
#include "host/Session.h"
#include "platform/win32/ole/ControlSite.h"

namespace kavidex::host {

class HostWindow {
public:
    explicit HostWindow(Options options);
    ~HostWindow();

    // Shows the frame, does what the options ask, runs until the frame closes; the exit code.
    int Run();

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam);
    LRESULT Handle(UINT message, WPARAM wparam, LPARAM lparam);
    void Create();
    void Start();
    void Arrange();
    void Command(int id);
    void Speak(int language); // the control's, and the frame's own
    void Work(UINT message, WPARAM wparam);
    void Close();
    void AskDossier();
    void AskFiles();
    void AskConnection();
    void ShowAdministration(std::size_t which);
    void ShowChecklist();
    void OpenDossier(const std::string& key, const std::string& description);
    void AddFiles(const std::vector<std::string>& files);
    void OnEvent(const std::string& name, const std::vector<std::string>& arguments);
    void Say(std::string_view text); // the status bar
    std::string Own(std::string_view english) const;
    void Report(const std::string& line); // the report file
    void Loop();

    Options lclOptions;
    HWND lclWindow = nullptr;
    HWND lclStatus = nullptr;
    platform::win32::ControlSite* lclSite = nullptr;
    std::unique_ptr<Session> lclSession;
    std::vector<std::unique_ptr<ControlFrame>> lclFrames;
    long lclFolder = 0; // the folder selected last; 0: the top
    bool lclActive = false;
    int lclLanguage = 0;
    int lclWorking = 0;         // calls of the control that are not back yet
    bool lclCloseAsked = false; // meanwhile
    int lclExitCode = 0;
};

} // namespace kavidex::host
