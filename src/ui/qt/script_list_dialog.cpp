#include "ui/qt/script_list_dialog.h"

#include "ui/qt/widget_text.h"
#include "ui_script_list_dialog.h"

namespace quarlin {

ScriptListDialog::ScriptListDialog(FrmScript& list, QWidget* parent) : QDialog(parent), list_(list) {
  Ui::ScriptListDialog form;
  form.setupUi(this);
  setWindowTitle(ShownText(FrmScript::caption));
  binder_ = std::make_unique<Binder>(list.Collection(), *this);
  list_.OnClose = [this] { accept(); };
}

ScriptListDialog::~ScriptListDialog() {
  list_.OnClose = nullptr;
}

}  // namespace quarlin
