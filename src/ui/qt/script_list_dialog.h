// The script list on the screen.
#pragma once

#include <QDialog>
#include <memory>

#include "script/frm_script.h"
#include "ui/qt/binder.h"

namespace quarlin {

class ScriptListDialog : public QDialog {
  Q_OBJECT

 public:
  // The list outlives the dialog.
  ScriptListDialog(FrmScript& list, QWidget* parent);
  ~ScriptListDialog() override;

 private:
  FrmScript& list_;
  std::unique_ptr<Binder> binder_;
};

}  // namespace quarlin
