// Brings a database of any dialect and version to the current schema, one version at a time.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "data/Connection.h"
#include "data/Texts.h"
#include "data/clsSettings.h"

namespace kavidex::platform {
struct Workstation;
}

namespace kavidex::data {

struct UpgradeContext;
struct UpgradeStep;

inline constexpr std::string_view currentVersion = "1.1.8";

// Each step's statements are issued in every dialect's form; what the database refuses is logged
// and skipped. The version is recorded after each step, so that an interrupted upgrade goes on at
// the first step not recorded; a step may run again without harm.
class clsUpdateDb {
public:
    explicit clsUpdateDb(const platform::Workstation& workstation, Translation translation = {});

    void SetDbConnection(ConnectionPtr connection);

    // The result of the last step run, 0 when there was none to run. -1, after a message box, when
    // what decides the way could not be read, or a step or its version could not be kept: the next
    // call goes on there. At the end of the chain the database is completed
    // (CompleteSchema, CompleteTexts).
    std::int32_t fncUpdateDb();

    // Each runs its step and puts the version it reached into `reached`; 0.
    std::int32_t fncUp101(std::string& reached);
    std::int32_t fncUpTo102(std::string& reached);
    std::int32_t fncUpTo103(std::string& reached);
    std::int32_t fncUpTo104(std::string& reached);
    std::int32_t fncUpTo105(std::string& reached);
    std::int32_t fncUpTo106(std::string& reached);
    std::int32_t fncUpTo107(std::string& reached);
    std::int32_t fncUpTo108(std::string& reached);
    std::int32_t fncUpTo109(std::string& reached);
    std::int32_t fncUpTo110(std::string& reached);
    std::int32_t fncUpTo111(std::string& reached);
    std::int32_t fncUpTo112(std::string& reached);
    std::int32_t fncUpTo113(std::string& reached);
    std::int32_t fncUpTo114(std::string& reached);
    std::int32_t fncUpTo115(std::string& reached);
    std::int32_t fncUpTo116(std::string& reached);
    std::int32_t fncUpTo117(std::string& reached);
    std::int32_t fncUpTo118(std::string& reached);

private:
    std::int32_t Walk();
    std::string Version();
    void Record(std::string_view version);
    std::int32_t Run(std::string_view from, std::string& reached);
    void RunPhases(const UpgradeStep& step, const UpgradeContext& context);

    const platform::Workstation& lclWorkstation;
    Translation lclTranslation;
    ConnectionPtr lclConnection;
    clsSettings lclSettings;
};

} // namespace kavidex::data
