#include <QAction>
#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

#include "ui/windows/run_spectra.h"
#include "ui/windows/run_window.h"

// The run window's controls and where they sit.
namespace zorvel::ui {

void RunWindow::buildMenus() {
  menuBar_ = new QMenuBar(this);
  options_ = menuBar_->addMenu("&Options");
  options_->setObjectName("Options");
  resetSamp_ = options_->addAction("&Reset Sample Number");
  resetSamp_->setObjectName("ResetSamp");
  tubeRange_ = options_->addAction("&Tube Range");
  tubeRange_->setObjectName("TubeRange");
  // The tube range belongs to tray runs; a cuvette run never offers it.
  tubeRange_->setVisible(false);
  filename_ = menuBar_->addAction(QString());
  filename_->setObjectName("MenuFilename");
}

QWidget* RunWindow::buildStatusArea() {
  auto* area = new QWidget;
  auto* layout = new QVBoxLayout(area);
  layout->setContentsMargins(0, 0, 0, 0);
  status_ = new QLabel;
  status_->setObjectName("Status");
  status_->setFrameShape(QFrame::Panel);
  status_->setFrameShadow(QFrame::Sunken);
  status_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  status_->setMinimumHeight(4 * status_->fontMetrics().lineSpacing() + 8);
  status_->setWordWrap(true);
  layout->addWidget(status_);
  auto* legends = new QHBoxLayout;
  abortMsg_ = new QLabel;
  abortMsg_->setObjectName("AbortMsg");
  abortMsg_->setVisible(false);
  timeInfo_ = new QLabel;
  timeInfo_->setObjectName("TimeInfo");
  legends->addWidget(timeInfo_, 1);
  legends->addWidget(abortMsg_);
  layout->addLayout(legends);
  return area;
}

QGroupBox* RunWindow::buildScanFrame() {
  syncFrame_ = new QGroupBox("Synchronous Scan");
  syncFrame_->setObjectName("SyncFrame");
  plot_ = new SpectraPlot;
  yMax_ = new QLineEdit;
  yMax_->setObjectName("YMax");
  yMin_ = new QLineEdit;
  yMin_->setObjectName("YMin");
  for (QLineEdit* entry : {yMin_, yMax_}) entry->setMaximumWidth(72);
  minVal_ = new QLabel;
  minVal_->setObjectName("MinVal_Label");
  maxVal_ = new QLabel;
  maxVal_->setObjectName("MaxVal_Label");
  maxVal_->setAlignment(Qt::AlignRight);
  autoHeight_ = new QCheckBox("Auto Height");
  autoHeight_->setObjectName("AutoHeight");
  autoHeight_->setChecked(true);
  progress_ = new QProgressBar;
  progress_->setObjectName("Perc_Panel");
  progress_->setRange(0, 100);
  progress_->setValue(0);

  auto* layout = new QGridLayout(syncFrame_);
  layout->addWidget(yMax_, 0, 0, Qt::AlignTop);
  layout->addWidget(yMin_, 1, 0, Qt::AlignBottom);
  layout->addWidget(plot_, 0, 1, 2, 2);
  layout->addWidget(minVal_, 2, 1);
  layout->addWidget(maxVal_, 2, 2);
  layout->addWidget(autoHeight_, 3, 0);
  layout->addWidget(progress_, 3, 1, 1, 2);
  layout->setColumnStretch(1, 1);
  layout->setColumnStretch(2, 1);
  layout->setRowStretch(0, 1);
  layout->setRowStretch(1, 1);
  return syncFrame_;
}

QGroupBox* RunWindow::buildDecisionFrame() {
  arFrame_ = new QGroupBox;
  arFrame_->setObjectName("AR_Frame");
  auto* layout = new QGridLayout(arFrame_);
  const char* captions[] = {"&Accept", "&Reject", "&Control", "&Blank"};
  for (int i = 0; i < 4; ++i) {
    auto* button = new QPushButton(captions[i]);
    button->setObjectName(QString("AcceptReject_%1").arg(i + 1));
    button->installEventFilter(this);
    layout->addWidget(button, 0, i);
    acceptReject_.push_back(button);
  }
  commentLabel_ = new QLabel("Comment:");
  commentLabel_->setObjectName("Comment_Label");
  commentBox_ = new QLineEdit;
  commentBox_->setObjectName("Comment_Box");
  layout->addWidget(commentLabel_, 1, 0);
  layout->addWidget(commentBox_, 1, 1, 1, 3);
  arFrame_->setVisible(false);
  commentLabel_->setVisible(false);
  commentBox_->setVisible(false);
  return arFrame_;
}

void RunWindow::keepPlacesWhenHidden() {
  // The choices, the comment box and the read buttons keep their places while hidden: nothing
  // moves under the operator's pointer from one prompt to the next, and the grid keeps its
  // height, so the reading waiting for a decision stays where it was seen.
  std::vector<QWidget*> kept{arFrame_, commentLabel_, commentBox_, okFrame_};
  kept.insert(kept.end(), acceptReject_.begin(), acceptReject_.end());
  for (QWidget* widget : kept) {
    QSizePolicy policy = widget->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    widget->setSizePolicy(policy);
  }
}

QGroupBox* RunWindow::buildOkFrame() {
  okFrame_ = new QGroupBox;
  okFrame_->setObjectName("OK_Frame");
  ok1_ = new QPushButton("&Init");
  ok1_->setObjectName("OK_1");
  ok2_ = new QPushButton("&Quit");
  ok2_->setObjectName("OK_2");
  auto* layout = new QVBoxLayout(okFrame_);
  for (QPushButton* button : {ok1_, ok2_}) {
    button->installEventFilter(this);
    layout->addWidget(button);
  }
  return okFrame_;
}

}  // namespace zorvel::ui
