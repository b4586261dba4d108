#include "resource.h"
#include "shell/alert_layout.h"
#include "shell/frame_win.h"
#include "shell/reporting_view.h"
#include <cstring>

namespace {

// Where the last alert box stood; the next one of the run stands there too.
RECT AlertRect = {};

struct AlertCall {
    const AlertRequest *request;
    AlertIcon icon;
};

bool IsThere(const char *text) {
    return text && *text != '\0';
}

int WidthOf(HWND control) {
    RECT rect;
    GetWindowRect(control, &rect);
    return rect.right - rect.left;
}

int HeightOf(HWND control) {
    RECT rect;
    GetWindowRect(control, &rect);
    return rect.bottom - rect.top;
}

int MeasureText(HWND dialog, const char *text) {
    HDC context = GetDC(dialog);
    HFONT font = reinterpret_cast<HFONT>(SendMessageA(dialog, WM_GETFONT, 0, 0));
    HGDIOBJ before = SelectObject(context, font ? static_cast<HGDIOBJ>(font) : GetStockObject(SYSTEM_FONT));
    SIZE size = {};
    GetTextExtentPoint32A(context, text, static_cast<int>(strlen(text)), &size);
    SelectObject(context, before);
    ReleaseDC(dialog, context);
    return size.cx;
}

// Sets the text of a control and answers its width, or takes away a control without text.
bool FillControl(HWND dialog, int id, const char *text, int &width) {
    HWND control = GetDlgItem(dialog, id);
    if (!IsThere(text)) {
        DestroyWindow(control);
        return false;
    }
    SetWindowTextA(control, text);
    width = MeasureText(dialog, text);
    return true;
}

HICON LoadAlertIcon(AlertIcon icon) {
    switch (icon) {
    case AlertIcon::Stop:
        return LoadIconA(nullptr, IDI_HAND);
    case AlertIcon::Warning:
        return LoadIconA(nullptr, IDI_EXCLAMATION);
    case AlertIcon::Question:
        return LoadIconA(nullptr, IDI_QUESTION);
    case AlertIcon::Information:
        return LoadIconA(nullptr, IDI_ASTERISK);
    default:
        return nullptr;
    }
}

void FillIcon(HWND dialog, AlertIcon icon, AlertMeasures &measures) {
    HWND control = GetDlgItem(dialog, ALERT_ICON);
    HICON picture = LoadAlertIcon(icon);
    measures.iconThere = picture != nullptr;
    if (!picture) {
        DestroyWindow(control);
        return;
    }
    SendMessageA(control, STM_SETICON, reinterpret_cast<WPARAM>(picture), 0);
    measures.iconWidth = WidthOf(control);
    measures.iconHeight = HeightOf(control);
}

AlertMeasures FillAlert(HWND dialog, const AlertCall &call) {
    AlertMeasures measures = {};
    LONG units = GetDialogBaseUnits();
    measures.baseX = LOWORD(units);
    measures.baseY = HIWORD(units);
    measures.lineHeight = HeightOf(GetDlgItem(dialog, ALERT_LINE));
    measures.buttonHeight = HeightOf(GetDlgItem(dialog, ALERT_BUTTON));
    for (int i = 0; i < 3; ++i) {
        measures.lineThere[i] =
            FillControl(dialog, ALERT_LINE + i, call.request->lines[i], measures.lineWidths[i]);
        measures.buttonThere[i] =
            FillControl(dialog, ALERT_BUTTON + i, call.request->buttons[i], measures.buttonWidths[i]);
    }
    FillIcon(dialog, call.icon, measures);
    return measures;
}

void Place(HWND dialog, int id, const AlertPlace &rect) {
    HWND control = GetDlgItem(dialog, id);
    if (control) MoveWindow(control, rect.x, rect.y, rect.width, rect.height, FALSE);
}

void PlaceAlert(HWND dialog, const AlertLayout &layout) {
    for (int i = 0; i < 3; ++i) {
        Place(dialog, ALERT_LINE + i, layout.lines[i]);
        Place(dialog, ALERT_BUTTON + i, layout.buttons[i]);
    }
    Place(dialog, ALERT_ICON, layout.icon);
    RECT size = {0, 0, layout.width, layout.height};
    AdjustWindowRect(&size, static_cast<DWORD>(GetWindowLongA(dialog, GWL_STYLE)), FALSE);
    RECT place = AlertRect;
    if (IsRectEmpty(&place)) GetWindowRect(dialog, &place);
    MoveWindow(dialog, place.left, place.top, size.right - size.left, size.bottom - size.top, FALSE);
}

INT_PTR CALLBACK AlertProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_INITDIALOG: {
        const AlertCall &call = *reinterpret_cast<const AlertCall *>(lParam);
        PlaceAlert(dialog, LayOutAlert(FillAlert(dialog, call)));
        SetWindowTextA(dialog, call.request->caption);
        return TRUE;
    }
    case WM_COMMAND:
        // Esc comes as button 2 and gives 0.
        GetWindowRect(dialog, &AlertRect);
        EndDialog(dialog, LOWORD(wParam) - (ALERT_BUTTON - 1));
        return TRUE;
    default:
        return FALSE;
    }
}

} // namespace

int ViewAlert(const AlertRequest &request, AlertIcon icon) {
    AlertCall call = {&request, icon};
    INT_PTR answer = DialogBoxParamA(Instance, MAKEINTRESOURCEA(DIALOG_ALERT), FrameWindow, AlertProc,
                                     reinterpret_cast<LPARAM>(&call));
    // A box that could not be made is as good as Esc.
    return answer < 0 ? 0 : static_cast<int>(answer);
}
