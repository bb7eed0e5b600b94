#include "help/help_places.h"

#include "help/manual_texts.h"

#include <QTabWidget>
#include <QWidget>

#include <algorithm>
#include <array>
#include <span>

namespace ktr {

namespace {

// Windows, their pages and parts.
constexpr HelpPlace places[] = {
    // The main window and what stands beside it
    {"FormMain", "window"},
    {"cmd_problems", "problems"},
    {"lst_problems", "problems"},
    {"ProblemPanel", "problems"},
    {"TransmissionPanel", "commands-transmit"},
    {"cmd_transmission_anyway", "commands-transmit"},
    {"cmd_transmission_receipt", "transmissions"},
    {"cmd_transmission_cancel", "commands-transmit"},
    {"cmd_transmission_resume", "commands-transmit"},
    {"cmd_transmission_close", "commands-transmit"},
    {"Form_compare", "compare"},
    {"Form_foretell", "foretell"},
    {"Form_fleet", "fleet"},
    {"Form_transmissions", "transmissions"},
    {"Form_scaling", "service-scaling"},
    {"Dlg_names", "names"},
    {"Dlg_which_configuration", "station-file"},
    {"frm_preview", "files"},
    {"frmSettings", "settings"},
    {"Dialog", "questions"},
    {"frmAbout", "about"},
    {"lst_limit_values", "limit-values"},
    // Parts of its pages
    {"lbl_event", "status-bar"},
    {"cmd_waiting", "status-bar"},
    {"cmd_unwatched", "status-bar"},
    {"cmd_connection_serial", "connecting-serial"},
    {"Cmb_connection_port", "connecting-serial"},
    {"Txt_connection_address", "connecting-ethernet"},
    {"cmd_connection_ethernet", "connecting-ethernet"},
    {"cmd_connection_exclusive", "connecting-ethernet"},
    {"cmd_connection_offline", "connecting-offline"},
    {"cmd_task_clock", "service-clock"},
    {"lbl_task_clock", "service-clock"},
    {"cmd_task_version", "service-version"},
    {"lbl_task_version", "service-version"},
    {"cmd_task_signal", "service-signal"},
    {"lbl_task_signal", "service-signal"},
    {"cmd_ip_scaling", "service-scaling"},
    {"cmd_info_readVersion", "service-version"},
    {"txt_info_appVer", "txt_info_version"},
    {"txt_info_version_ktr", "txt_info_version"},
    {"cmd_logfile", "txt_logfile"},
    {"cmd_logfile_open", "txt_logfile"},
    {"cmd_historyExportFile", "txt_historyExportFile"},
    {"cmd_history_open", "txt_historyExportFile"},
    {"Text_switch_frei", "lst_swtch_frei"},
    {"cmd_swtch_frei_date", "lst_swtch_frei"},
    {"Command_switch_add", "lst_swtch_frei"},
    {"Cmd_swtch_clear", "lst_swtch_frei"},
    {"Cmd_swtch_load", "lst_swtch_frei"},
    {"Cmd_swtch_save", "lst_swtch_frei"},
    {"cmd_swtch_start_date", "Txt_swtch_start"},
    {"cmd_test_send", "txt_test_send"},
    {"cmd_test_settime_date", "cmd_test_settime"},
    {"cmd_test_clear", "txt_test_debug"},
    {"txt_test_debug_pause", "txt_test_debug"},
    {"txt_test_debug_search", "txt_test_debug"},
    {"txt_test_debug_save", "txt_test_debug"},
    {"txt_test_receive_pause", "txt_test_receive"},
    {"txt_test_receive_search", "txt_test_receive"},
    {"txt_test_receive_save", "txt_test_receive"},
    {"cmd_kal", "calibrate"},
    {"VScr_kalib", "calibrate"},
    {"lbl_kal_done", "calibrate"},
    // The operational mode
    {"Form_betriebsmodus", "operational-mode"},
    {"TreeView_KTR_Nodes", "stations"},
    {"Text_filter_station", "stations"},
    {"Combo_filter_station", "stations"},
    {"Cmd_tree_order", "stations"},
    {"Page_alarms", "alarm-page"},
    {"Page_curves", "curves"},
    {"Page_overview", "overview"},
    {"AlarmBar", "alarm-comes"},
    {"Check_stumm", "sound"},
    {"OperatorBar", "shifts"},
    {"ListBanner", "windows"},
    {"Check_pic0_exclusive", "exclusive"},
    {"Combo_pic0_exclusiveON", "exclusive"},
    {"Combo_pic0_exclusiveOFF", "exclusive"},
    {"Text_pic0_exclusiveON", "exclusive"},
    {"Text_pic0_exclusiveOFF", "exclusive"},
    {"Cmd_pic0_maintenance", "maintenance"},
    {"Cmd_pic0_maintenance_end", "maintenance"},
    {"lbl_pic0_configuration", "station-file"},
    {"Cmd_pic0_link", "station-file"},
    {"Cmd_pic0_unlink", "station-file"},
    {"Cmd_alarm_shelve", "maintenance"},
    {"Cmd_alarm_unshelve", "maintenance"},
    {"Check_alarm_shelved", "maintenance"},
    {"Cmd_no_sound", "sound"},
    {"Form_stationen", "stations"},
    {"Form_export", "opmode-export"},
    {"Form_place", "keepers"},
    {"Form_retention", "record-keep"},
    {"Form_limits", "chattering"},
    {"Form_rules", "rules"},
    {"Form_shelve", "maintenance"},
    {"Form_sound", "sound"},
    {"Form_groups", "overview"},
    {"Form_record", "record"},
    // The help itself
    {"Form_manual", "index-reading"},
    {"Form_keys", "keys"},
    {"Form_report", "trouble-report"},
    {"Form_welcome", "welcome"},
};

/// The pages of tab strips whose pages have no names.
struct TabPlaces
{
    const char *strip;
    std::array<const char *, 9> anchors;
};
constexpr TabPlaces tabPlaces[] = {
    {"TabStrip1",
     {"gsm", "ip", "limit-values", "switch-points", "test", "info", "ethernet", "connection", "calibration"}},
    {"TabStrip_record", {"record-find", "record-reports", "record-reports", "record-reports", "record-map"}},
};

QString placeNamed(const QString &name)
{
    const auto *const place = std::ranges::find_if(
        places, [&name](const HelpPlace &row) { return name == QLatin1String(row.widget); });
    return place == std::end(places) ? QString() : QString::fromLatin1(place->anchor);
}

/// Of the page that a tab strip shows, whether or not the widget stands in it.
QString presentPage(const QTabWidget &strip)
{
    for (const TabPlaces &row : tabPlaces) {
        const auto index = static_cast<std::size_t>(strip.currentIndex());
        if (strip.objectName() == QLatin1String(row.strip) && index < row.anchors.size() &&
            row.anchors[index] != nullptr) {
            return QString::fromLatin1(row.anchors[index]);
        }
    }
    const QWidget *page = strip.currentWidget();
    return page == nullptr ? QString() : placeNamed(page->objectName());
}

} // namespace

QList<HelpPlace> helpPlaces()
{
    QList<HelpPlace> all(std::begin(places), std::end(places));
    for (const TabPlaces &row : tabPlaces) {
        for (const char *anchor : row.anchors) {
            if (anchor != nullptr) {
                all += HelpPlace{row.strip, anchor};
            }
        }
    }
    return all;
}

bool hasHelpPlace(const QString &objectName)
{
    return !placeNamed(objectName).isEmpty();
}

QString withoutIndex(const QString &objectName)
{
    qsizetype end = objectName.size();
    while (end > 0 && objectName[end - 1].isDigit()) {
        --end;
    }
    const bool isIndexed = end > 1 && end < objectName.size() && objectName[end - 1] == u'_';
    return isIndexed ? objectName.left(end - 1) : objectName;
}

QString helpAnchor(const QWidget *widget, const ManualTexts &manual)
{
    for (; widget != nullptr; widget = widget->parentWidget()) {
        QString name = withoutIndex(widget->objectName());
        if (!name.isEmpty() && manual.has(name)) {
            return name;
        }
        const auto *strip = qobject_cast<const QTabWidget *>(widget);
        QString place = strip != nullptr ? presentPage(*strip) : placeNamed(name);
        if (!place.isEmpty()) {
            return place;
        }
    }
    return manual.chapters().value(0);
}

} // namespace ktr
