// Numbers shared by the host's resources and its code.
#pragma once

#define IDR_MAIN_MENU 100
#define IDR_KEYS 101

#define ID_OPEN 200
#define ID_ADD_FILES 201
#define ID_CONNECTION 202
#define ID_EXIT 203
#define ID_CLOSE_DOSSIER 204
#define ID_CHECKLIST 205

// The controls of an administrator, in the order of HostWindow's table.
#define ID_ADMIN 220
