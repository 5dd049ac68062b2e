#pragma once

#include <QDialog>

#include "core/app/setup_presenter.h"
#include "core/app/setup_view.h"

class QButtonGroup;
class QCheckBox;
class QComboBox;
class QGroupBox;
class QLabel;
class QLayout;
class QListWidget;
class QListWidgetItem;
class QPushButton;

namespace zorvel::ui {

// SETUPFORM, "ZORVEL Setup": the fluorimeter model, the COM ports, the printer and autosampler
// flags, the base directory and the plate description file. The rules live in SetupPresenter.
class SetupWindow final : public QDialog, public SetupView {
  Q_OBJECT
 public:
  SetupWindow(AppState& state, Operator& op, std::function<void(const std::string&)> trayShown,
              QWidget* parent = nullptr);

  SetupPresenter& presenter() { return presenter_; }

  void setCancelCaption(const std::string& caption) override;
  void showModel(int fluorimeter) override;
  void showPorts(int fluorimeter, int dilutor, int autosampler) override;
  void showPrinter(bool available) override;
  void showAutosampler(bool available) override;
  void setAutosamplerFramesVisible(bool visible, int heightTwips) override;
  void setBaseDirectoryLabel(const std::string& path) override;
  void setPlateFileLabel(const std::string& path) override;
  std::string directoryListPath() const override;
  void setDirectoryListPath(const std::string& path) override;
  void refreshDirectoryList() override;
  void close() override;

 protected:
  void showEvent(QShowEvent* event) override;
  void reject() override;

 private:
  // The constructor's frames: the instrument column (model, ports, flags) and the files column
  // (base directory, plate file, OK and Cancel).
  QLayout* buildInstrumentColumn();
  QLayout* buildFilesColumn();
  QGroupBox* buildDirectoryFrame();
  QGroupBox* buildPlateFrame();
  void connectInstrumentControls();
  QGroupBox* portGroup(const QString& title, const QString& name, QButtonGroup** group);
  void buildDrives();
  void enterDirectory(QListWidgetItem* item);

  SetupPresenter presenter_;
  QButtonGroup* model_ = nullptr;
  QButtonGroup* flPort_ = nullptr;
  QButtonGroup* dilPort_ = nullptr;
  QButtonGroup* asPort_ = nullptr;
  QCheckBox* printer_ = nullptr;
  QCheckBox* autosampler_ = nullptr;
  QGroupBox* dilFrame_ = nullptr;
  QGroupBox* asFrame_ = nullptr;
  QGroupBox* plateFrame_ = nullptr;
  QLabel* plateLabel_ = nullptr;
  QLabel* baseLabel_ = nullptr;
  QComboBox* drives_ = nullptr;
  QListWidget* directories_ = nullptr;
  QPushButton* cancel_ = nullptr;
  QString listPath_;
  bool opened_ = false;
  bool updating_ = false;
};

}  // namespace zorvel::ui
