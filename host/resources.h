// Numbers shared by the host's resources and its code.
#pragma once

#define IDR_KEYS 101

#define ID_OPEN 200
#define ID_ADD_FILES 201
#define ID_CONNECTION 202
#define ID_EXIT 203
#define ID_CLOSE_DOSSIER 204
#define ID_CHECKLIST 205
#define ID_LANGUAGE 210 // and the three behind it, in the order of the control's languages

// The controls of an administrator, in the order of HostWindow's table.
#define ID_ADMIN 220
