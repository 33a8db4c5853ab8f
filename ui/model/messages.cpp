#include "ui/model/messages.h"

namespace vok {

MessageAnswer ShowMessage(const WindowServices& services, const std::string& text,
                          const std::string& title, MessageIcon icon, MessageButtons buttons) {
  MessageBox box;
  box.text = text;
  box.title = title;
  box.icon = icon;
  box.buttons = buttons;
  return services.host.message_boxes.Show(box);
}

}  // namespace vok
