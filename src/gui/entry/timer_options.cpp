#include "gui/entry/timer_options.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QSpinBox>
#include <QVBoxLayout>

#include "entry/timer_idle.h"
#include "gui/app_state.h"
#include "gui/dialogs/options_dialog.h"
#include "gui/entry/idle_source.h"

namespace qb {

void addTimerPage(OptionsDialog& dialog, AppState& state) {
    auto* page = new QWidget(&dialog);
    const std::uint32_t stored = idleMinutes(state.registry());
    const std::unique_ptr<IdleSource> source = desktopIdleSource();

    auto* ask = new QCheckBox(QStringLiteral("Ask about idle time after"), page);
    ask->setObjectName(QStringLiteral("idleAsk"));
    ask->setChecked(stored != 0);
    auto* minutes = new QSpinBox(page);
    minutes->setObjectName(QStringLiteral("idleMinutes"));
    minutes->setRange(1, static_cast<int>(kMostIdleMinutes));
    minutes->setValue(static_cast<int>(stored != 0 ? stored : kDefaultIdleMinutes));
    minutes->setEnabled(ask->isChecked());
    QObject::connect(ask, &QCheckBox::toggled, minutes, &QWidget::setEnabled);
    auto* row = new QHBoxLayout;
    row->addWidget(ask);
    row->addWidget(minutes);
    row->addWidget(new QLabel(QStringLiteral("minutes without keyboard or mouse"), page));
    row->addStretch(1);

    auto* explain = new QLabel(page);
    explain->setObjectName(QStringLiteral("idleSource"));
    explain->setWordWrap(true);
    if (source) {
        explain->setText(
            QStringLiteral("When a timer has been recording while you were away that long, "
                           "Quillarbor asks on your return whether to keep the time, discard "
                           "it, or discard it and pause the timer. Idle time comes from %1.")
                .arg(source->name()));
    } else {
        explain->setText(idleUnavailableText());
        ask->setEnabled(false);
        minutes->setEnabled(false);
    }

    auto* column = new QVBoxLayout(page);
    column->addLayout(row);
    column->addWidget(explain);
    column->addStretch(1);

    const bool detected = source != nullptr;
    Registry& registry = state.registry();
    dialog.addPage(page, QStringLiteral("Timers"), [=, &registry](Settings&) {
        if (!detected) return;
        setIdleMinutes(registry,
                       ask->isChecked() ? static_cast<std::uint32_t>(minutes->value()) : 0);
    });
}

}  // namespace qb
