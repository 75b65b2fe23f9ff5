// Numbers shared by the host's resources and its code.
#pragma once

#define IDR_MAIN_MENU 100
#define IDR_KEYS 101
#define IDD_OPEN 110
#define IDD_CONNECTION 111

#define ID_OPEN 200
#define ID_ADD_FILES 201
#define ID_CONNECTION 202
#define ID_EXIT 203
#define ID_CLOSE_DOSSIER 204

#define IDC_KEY 300
#define IDC_DESCRIPTION 301
#define IDC_DATABASE 302
#define IDC_STORE 303
