// A library with a database of the test's own, and nobody there to answer a message box.
#pragma once

#include <windows.h>
#include <commctrl.h>
#include <shellapi.h>

#include <string>
#include <string_view>

#include "Container.h"
#include "kavidex_idl.h"

namespace kavidex::tests {

class Dossiers : public Library {
protected:
    void SetUp() override {
        Library::SetUp();
        wchar_t folder[MAX_PATH], name[MAX_PATH];
        GetTempPathW(MAX_PATH, folder);
        GetTempFileNameW(folder, L"kvx", 0, name);
        DeleteFileW(name);
        CreateDirectoryW(name, nullptr);
        lclFolder = name;
        Unattended(L"True");
        lclConnection = Connect("a.kdb");
    }
    void TearDown() override {
        Close(lclConnection);
        Unattended(nullptr);
        wchar_t all[MAX_PATH + 2] = {};
        lclFolder.copy(all, MAX_PATH);
        SHFILEOPSTRUCTW order{nullptr, FO_DELETE, all, nullptr, FOF_NO_UI, FALSE, nullptr, nullptr};
        SHFileOperationW(&order);
        Library::TearDown();
    }

    std::string Path(const std::string& name) const {
        return platform::win32::FromWide(lclFolder) + "\\" + name;
    }
    // The tables brought up to date, the store in the test's folder.
    Variant Connect(const std::string& name) const {
        const Variant connection =
            Late(Make(CLSID_EmbeddedDatabase)).Call(L"OpenOrCreate", {Variant(Path(name))});
        Late(Make(CLSID_ctrlCorrespondence)).PutRef(L"DbConnection", {connection});
        const Late settings(Make(CLSID_clsSettings));
        settings.PutRef(L"DbConnection", {connection});
        settings.Call(L"SetSetting", {"Storage", "DocumentPath", Variant(Path(""))});
        return connection;
    }
    static void Close(Variant& connection) {
        if (connection.IsObject()) Late(connection).Call(L"Close");
        connection = Variant();
    }
    // Shown in the container, with three folders.
    static Late Open(Container& host, const ComPtr<IDispatch>& control, const Variant& connection,
                     const std::string& key) {
        host.Take(control, true);
        const Late binder(control);
        binder.PutRef(L"DbConnection", {connection});
        EXPECT_EQ(
            binder.Call(L"OpenOrCreate", {Variant(key), "Dossier", "Post;Archief;Rest"}).ToInt32(),
            0);
        return binder;
    }

    // A tree of two folders, shown in the container.
    Late OpenTree(Container& host) const {
        host.Take(Make(CLSID_ctrlTree), true);
        const Late tree(host.control);
        tree.PutRef(L"DbConnection", {lclConnection});
        EXPECT_TRUE(tree.Call(L"CreateNew", {"Boom", "A;B"}).ToBool());
        return tree;
    }
    static Variant AddFolder(const Late& binder, const char* name) {
        const Variant none(static_cast<IDispatch*>(nullptr));
        return binder.Call(L"AddItem", {0, "tab", none, 0, name, 0});
    }

    static HWND Find(HWND parent, const wchar_t* type) {
        if (const HWND found = FindWindowExW(parent, nullptr, type, nullptr)) return found;
        for (HWND child = GetWindow(parent, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT))
            if (const HWND found = Find(child, type)) return found;
        return nullptr;
    }
    static HWND TreeOf(const Container& host) { return Find(host.window, L"SysTreeView32"); }
    static LRESULT Node(HWND tree, UINT which, LRESULT of) {
        return SendMessageW(tree, TVM_GETNEXTITEM, which, of);
    }
    static LRESULT FirstFolder(HWND tree) {
        return Node(tree, TVGN_CHILD, Node(tree, TVGN_ROOT, 0));
    }
    static void Select(HWND tree, LRESULT node) {
        SendMessageW(tree, TVM_SELECTITEM, TVGN_CARET, node);
    }
    static std::string TextOf(HWND tree, LRESULT node) {
        wchar_t text[200] = {};
        TVITEMW item{};
        item.mask = TVIF_TEXT;
        item.hItem = reinterpret_cast<HTREEITEM>(node);
        item.pszText = text;
        item.cchTextMax = 200;
        SendMessageW(tree, TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&item));
        return platform::win32::FromWide(text);
    }
    // The id of an event by its name, as the type library has it.
    DISPID Event(REFIID events, const wchar_t* name) const {
        ComPtr<ITypeLib> types;
        ComPtr<ITypeInfo> info;
        MEMBERID id = DISPID_UNKNOWN;
        auto* text = const_cast<LPOLESTR>(name);
        if (SUCCEEDED(LoadTypeLibEx(Library::Path().c_str(), REGKIND_NONE, types.Put())) &&
            SUCCEEDED(types->GetTypeInfoOfGuid(events, info.Put())))
            info->GetIDsOfNames(&text, 1, &id);
        EXPECT_NE(id, DISPID_UNKNOWN);
        return id;
    }
    static void Pump() {
        MSG message{};
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
    }

    static void Unattended(const wchar_t* value) {
        constexpr const wchar_t* key =
            L"Software\\VB and VBA Program Settings\\Kavidex\\DebugFlags";
        if (value)
            RegSetKeyValueW(HKEY_CURRENT_USER, key, L"Unattended", REG_SZ, value,
                            static_cast<DWORD>((wcslen(value) + 1) * sizeof *value));
        else
            RegDeleteKeyValueW(HKEY_CURRENT_USER, key, L"Unattended");
    }

    std::wstring lclFolder;
    Variant lclConnection;
};

} // namespace kavidex::tests
