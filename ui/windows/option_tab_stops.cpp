#include "ui/windows/option_tab_stops.h"

#include <QAbstractButton>
#include <QButtonGroup>
#include <QWidget>

namespace zorvel::ui {

namespace {

void placeTabStop(QButtonGroup* group) {
  const QList<QAbstractButton*> buttons = group->buttons();
  QAbstractButton* stop = group->checkedButton();
  if (stop == nullptr && !buttons.isEmpty()) stop = buttons.front();
  for (QAbstractButton* button : buttons) {
    button->setFocusPolicy(button == stop ? Qt::StrongFocus : Qt::ClickFocus);
  }
}

}  // namespace

void KeepTabOnCheckedOptions(QWidget* window) {
  for (QButtonGroup* group : window->findChildren<QButtonGroup*>()) {
    if (!group->exclusive() || group->property("tabStopKept").toBool()) continue;
    group->setProperty("tabStopKept", true);
    placeTabStop(group);
    QObject::connect(group, &QButtonGroup::buttonToggled, group,
                     [group](QAbstractButton*, bool checked) {
                       if (checked) placeTabStop(group);
                     });
  }
}

}  // namespace zorvel::ui
