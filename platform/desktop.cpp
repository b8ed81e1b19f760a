#include "platform/desktop.h"

#include "platform/values/number_text.h"

namespace pxtarvo {

MessageAnswer Desktop::messageBox(const Message& message) {
    ++messagesShown_;
    return showMessage(message);
}

void Desktop::reportError(const RuntimeError& error) {
    Message report;
    report.text =
        "Error '" + plainNumber(error.number()) + "' en tiempo de ejecución:\r\n\r\n" + error.description();
    report.icon = MessageIcon::Critical;
    messageBox(report);
}

}  // namespace pxtarvo
