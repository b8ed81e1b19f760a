#pragma once

#include "devhost/user_script.h"
#include "devhost/wine/screen/user_hands.h"
#include "devhost/wine/screen/window_pictures.h"

namespace pxtarvo::devhost {

/// Answers the dialogs of the plug-in and the host, one after the other, as the script says.
class DialogAnswers {
  public:
    /// All three must outlive it.
    DialogAnswers(ScriptReader& reader, UserHands& hands, WindowPictures& pictures)
        : reader_(reader), hands_(hands), pictures_(pictures) {}

    /// To be called every few milliseconds while a dialog may be open.
    void look();
    /// The next dialog, or the one that was open, is the file dialog.
    void choosingFile(bool choosing) noexcept { choosingFile_ = choosing; }
    /// The dialog is gone.
    void closed();

  private:
    void answerMessage(HWND box, const Action* action);
    void answerFileDialog(HWND dialog, const Action* action);
    void answerSearch(HWND window, const Action* action);

    ScriptReader& reader_;
    UserHands& hands_;
    WindowPictures& pictures_;
    HWND answered_ = nullptr;  ///< the dialog that has its answer
    DWORD since_ = 0;          ///< when the one without was there first, 0 for none
    bool choosingFile_ = false;
};

}  // namespace pxtarvo::devhost
