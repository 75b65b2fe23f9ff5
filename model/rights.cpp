#include "model/rights.h"

#include "platform/text.h"

namespace kavidex::model {
namespace {

constexpr RightGroup groups[] = {
    {"RightsTop", "Administrator rechten"},
    {"DossierTop", "Dossiers"},
    {"ScanTop", "Scannen"},
};

constexpr Right rights[] = {
    {"CreateEditRights", "Gebuikers en groepen aanmaken", "RightsTop"},
    {"ReadEditRights", "Rechten bekijken", "RightsTop"},
    {"UpdateEditRights", "Rechten wijzigen", "RightsTop"},
    {"DeleteEditRights", "Gebuikers en groepen verwijderen", "RightsTop"},
    {"CreateDossierType", "Dossiertypen maken", "RightsTop"},
    {"ReadDossierType", "Dossiertypen bekijken", "RightsTop"},
    {"UpdateDossierType", "Dossiertypen wijzigen", "RightsTop"},
    {"DeleteDossierType", "Dossiertypen verwijderen", "RightsTop"},
    {"EditSettings", "Instellingen aanpassen", "RightsTop"},
    {"CreateDossiers", "Dossiers aanmaken", "DossierTop"},
    {"ReadDossiers", "Dossiers bekijken", "DossierTop"},
    {"EditDossiers", "Dossiers wijzigen", "DossierTop"},
    {"DeleteDossiers", "Dossiers verwijderen", "DossierTop"},
    {"AddExternal", "Externe documenten invoegen (ook van een ander dossier)", "DossierTop"},
    {"UpdateVoorblad", "Voorblad bijwerken", "DossierTop"},
    {"CreateShortcut", "Snelkoppeling maken", "DossierTop"},
    {"Delete", "Verwijderen", "DossierTop"},
    {"Mail", "Mailen", "DossierTop"},
    {"Print", "Afdrukken", "DossierTop"},
    {"Annotations", "Annotaties maken/bewerken/verwijderen", "DossierTop"},
    {"ViewAnnotations", "Annotaties bekijken", "DossierTop"},
    {"CreateFolders", "Mappen maken", "DossierTop"},
    {"CreateTabs", "Tabbladen maken/wijzigen/verwijderen", "DossierTop"},
    {"StartScan", "Scannen", "ScanTop"},
    {"AddScannedImages", "Scans aan dossier toevoegen", "ScanTop"},
    {"TransportBatches", "Batches transporteren (alleen ASP)", "ScanTop"},
};
static_assert(std::size(rights) == 26);

} // namespace

std::span<const RightGroup> RightGroups() { return groups; }

std::span<const Right> Rights() { return rights; }

const Right* FindRight(std::string_view key) {
    for (const Right& right : rights)
        if (platform::EqualAsciiNoCase(right.key, key)) return &right;
    return nullptr;
}

} // namespace kavidex::model
