#include "shell/data_listing_window.h"

#include "resource.h"
#include "shell/dialog_items_win.h"
#include "shell/frame_win.h"
#include "shell/reporting.h"
#include <algorithm>
#include <string>

namespace {

HWND listingDialog = nullptr;
// Where the window stood when it was closed; all 0 until then.
RECT listingPlace = {};

HWND List(HWND dialog) {
    return GetDlgItem(dialog, LISTING_LIST);
}

void FillWithList(HWND dialog) {
    RECT client = {};
    GetClientRect(dialog, &client);
    MoveWindow(List(dialog), 0, 0, client.right, client.bottom, TRUE);
}

void RestorePlace(HWND dialog) {
    const RECT &place = listingPlace;
    if (place.left == 0 && place.top == 0) return;
    MoveWindow(dialog, place.left, place.top, place.right - place.left, place.bottom - place.top, FALSE);
}

// The program's, which a dialog does not have by itself.
void ShowIcon(HWND dialog) {
    auto icon =
        reinterpret_cast<LPARAM>(LoadImageA(Instance, "icon", IMAGE_ICON, GetSystemMetrics(SM_CXSMICON),
                                            GetSystemMetrics(SM_CYSMICON), LR_SHARED));
    SendMessageA(dialog, WM_SETICON, ICON_SMALL, icon);
}

std::string LineText(HWND list, WPARAM line) {
    LRESULT length = SendMessageA(list, LB_GETTEXTLEN, line, 0);
    if (length <= 0) return "";
    std::string text(static_cast<size_t>(length) + 1, '\0');
    SendMessageA(list, LB_GETTEXT, line, reinterpret_cast<LPARAM>(text.data()));
    text.resize(static_cast<size_t>(length));
    return text;
}

// Lets the list scroll sideways as far as its widest line needs.
void SetListExtent(HWND list) {
    HDC context = GetDC(list);
    if (!context) return;
    auto font = reinterpret_cast<HGDIOBJ>(SendMessageA(list, WM_GETFONT, 0, 0));
    HGDIOBJ before = font ? SelectObject(context, font) : nullptr;
    LONG widest = 0;
    LRESULT count = SendMessageA(list, LB_GETCOUNT, 0, 0);
    for (LRESULT line = 0; line < count; ++line) {
        std::string text = LineText(list, static_cast<WPARAM>(line));
        SIZE size = {};
        GetTextExtentPoint32A(context, text.c_str(), static_cast<int>(text.size()), &size);
        widest = std::max(widest, size.cx);
    }
    if (before) SelectObject(context, before);
    ReleaseDC(list, context);
    constexpr int MARGIN = 8;
    SendMessageA(list, LB_SETHORIZONTALEXTENT, static_cast<WPARAM>(widest + MARGIN), 0);
}

void TakeCommand(WPARAM wParam) {
    if (LOWORD(wParam) == IDCANCEL) {
        CloseDataListing();
    } else if (LOWORD(wParam) == LISTING_LIST &&
               (HIWORD(wParam) == LBN_SELCHANGE || HIWORD(wParam) == LBN_DBLCLK)) {
        ChooseDataListingLine();
    }
}

INT_PTR CALLBACK ListingProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_INITDIALOG:
        ShowIcon(dialog);
        RestorePlace(dialog);
        FillWithList(dialog);
        return TRUE;
    case WM_SIZE:
        FillWithList(dialog);
        return TRUE;
    case WM_COMMAND:
        TakeCommand(wParam);
        return TRUE;
    case WM_SYSCOMMAND:
        return OpenMenuByKey(wParam, lParam);
    case WM_CLOSE:
        CloseDataListing();
        return TRUE;
    case WM_DESTROY:
        // The frame takes its dialogs along when it goes.
        listingDialog = nullptr;
        return TRUE;
    default:
        return FALSE;
    }
}

} // namespace

bool DataListingIsOpen() {
    return listingDialog != nullptr;
}

void ShowDataListing() {
    if (listingDialog) {
        if (IsIconic(listingDialog)) ShowWindow(listingDialog, SW_RESTORE);
        BringWindowToTop(listingDialog);
        return;
    }
    listingDialog =
        CreateDialogParamA(Instance, MAKEINTRESOURCEA(DIALOG_LISTING), FrameWindow, ListingProc, 0);
    if (!listingDialog) ProgramError("CreateDialog Failure in OpenDataListing");
}

void DestroyDataListing() {
    if (!listingDialog) return;
    GetWindowRect(listingDialog, &listingPlace);
    DestroyWindow(listingDialog);
}

void ClearDataListing() {
    ListClear(listingDialog, LISTING_LIST);
}

bool AddDataListingLine(const char *line) {
    return ListAdd(listingDialog, LISTING_LIST, line);
}

void RedrawDataListing() {
    SetListExtent(List(listingDialog));
    ListRedraw(listingDialog, LISTING_LIST);
}
