#pragma once

#include "platform/controls.h"
#include "platform/windows/automation/automation_object.h"

namespace pxtarvo::windows {

/// A window's text box as the host's library gets it: Text (the default member), BackColor, ForeColor,
/// SelStart, SelLength, SelText, Enabled, Visible, hWnd, Tag, MaxLength, Name, Index and SetFocus. It may
/// outlive the text box: every member is 91 from then on.
class TextBoxObject : public AutomationObject {
  public:
    /// `box` must live until disconnect().
    explicit TextBoxObject(TextBox& box);

    void disconnect() noexcept { box_ = nullptr; }

  protected:
    OwnedVariant member(int place, const CallArguments& arguments) override;

  private:
    TextBox* box_;
};

}  // namespace pxtarvo::windows
