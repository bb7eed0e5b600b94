<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE" sourcelanguage="en">
<context>
    <name>Printing</name>
    <message>
        <source>Not printed: there are %1 pages, none of which was chosen.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Not printed: the printer &quot;%1&quot; cannot be used.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The printer &quot;%1&quot; stopped.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No printer is installed. The print preview can save the configuration as a PDF.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Problems</name>
    <message>
        <source>is no number</source>
        <translation>ist keine Zahl</translation>
    </message>
    <message>
        <source>has a comma, which separates fields</source>
        <translation>enthält ein Komma, das Felder voneinander trennt</translation>
    </message>
    <message>
        <source>is no PIN of 4 to 8 digits</source>
        <translation>ist keine PIN aus 4 bis 8 Ziffern</translation>
    </message>
    <message>
        <source>is no phone number of &quot;+&quot; and digits</source>
        <translation>ist keine Rufnummer aus „+“ und Ziffern</translation>
    </message>
    <message>
        <source>is no address of four numbers from 0 to 255</source>
        <translation>ist keine Adresse aus vier Zahlen von 0 bis 255</translation>
    </message>
    <message>
        <source>is no byte of two hexadecimal digits</source>
        <translation>ist kein Byte aus zwei hexadezimalen Ziffern</translation>
    </message>
    <message>
        <source>is no date and time of the form YYMMDDhhmm</source>
        <translation>ist kein Zeitpunkt der Form JJMMTTSSMM</translation>
    </message>
    <message>
        <source>there is a text but no channel</source>
        <translation>ein Meldungstext ist angegeben, aber kein Kanal</translation>
    </message>
    <message>
        <source>step %1</source>
        <translation>Schritt %1</translation>
    </message>
    <message>
        <source>the command is too long: %1 characters of %2 at most</source>
        <translation>der Befehl ist zu lang: %1 statt höchstens %2 Zeichen</translation>
    </message>
    <message>
        <source>the command has characters that the module does not know</source>
        <translation>der Befehl enthält Zeichen, die das Modul nicht kennt</translation>
    </message>
</context>
<context>
    <name>ktr::CalibrationPage</name>
    <message>
        <source>Sends %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Confirmation of the module</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Earlier confirmations</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ktr::ConnectionPage</name>
    <message>
        <source>Serial port</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Search all ports</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>A port of the list, or one typed; 9600 baud, 8 data bits</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Port</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Connect</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Where the module is reached: four numbers from 0 to 255, or a name</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The module keeps its GSM connection beside this one</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The module uses this connection alone</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Events of the connection</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>connected</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>not connected</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ktr::EthernetPage</name>
    <message>
        <source>Four numbers from 0 to 255 with dots between them</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The maker&apos;s part of the address; it is the same in every module</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Two hexadecimal digits; editable in expert mode</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ktr::FileCommands</name>
    <message>
        <source>New configuration</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Not saved: no file was chosen</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Saved: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Loaded: %1. What was not saved before comes back with %2.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Loaded: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Loaded: %1. Not everything in it could be used: %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The list of recent files could not be kept</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ktr::FormMain</name>
    <message>
        <source>There is no file %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 cannot be opened</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ktr::GsmPage</name>
    <message>
        <source>Name under which the module reports; small umlauts are written out</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>PIN of the SIM card, 4 to 8 digits</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Whole number from -32768 to 32767</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Shown as recipient of notifications and as target of switch points</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>International form: + and digits</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ktr::HolidayCard</name>
    <message>
        <source>Date of a holiday, such as 24.12.2027</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>A click or the Delete key removes a date; at most %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Replaces the list by the one that is kept for you</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Keeps the list for other configurations</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no date</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 is in the list already</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Holiday removed: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Holidays loaded: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Holidays stored: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The holidays could not be stored in your settings</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ktr::InfoPage</name>
    <message>
        <source>Who answers for this configuration</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Any text; a new configuration is given the date of today</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Every edit writes its date and time here</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>What the module holds, as it told last</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The program in the module, as it told last</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The conversation with the module is appended to this file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Choose the log file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The module&apos;s archive is appended to this file (*.csv)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Choose the history export file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Choose…</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ktr::InputPage</name>
    <message>
        <source>Minutes between two archive entries, a whole number; 0: none by time</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Change that triggers an archive entry, in the channel&apos;s unit</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Count the pulses of this input</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Count the operating hours of this input</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Invert the counted signal</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Pulses that count as one, 1 to 10000</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Value that the module starts with</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Value shown at a signal of 0, in the unit beside it</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Change of the value with each step of the signal</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unit of the scaled value</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Send start and output values</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Without it a transmission leaves counters and outputs as they are</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ktr::LimitValuePage</name>
    <message>
        <source>The input or output that is watched</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Number, in the unit of the channel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>How far the value must come back; number, in the unit of the channel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Number; on inputs that count pulses the count per interval</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>less than the limit</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>equal to the limit</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>greater than the limit</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reference</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Text of the message; small umlauts are written out</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>How often the message is repeated, 0 to 15</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Minutes between two messages, 1 to 1440</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ktr::LinkPresenter</name>
    <message>
        <source>Step %1 of %2 sent</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Configuration transmitted: %1 commands</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Transmission ended: %1 commands sent, %2 refused</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The transmission was broken off before step %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>searching</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>listening on %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This is not part of the program yet</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Waiting until the module reads its messages</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 leaves when the module reads its messages</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ktr::MainMenu</name>
    <message>
        <source>Recent files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Edit</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Undo</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Redo</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Search serial ports</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show problems</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Tool bar</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ktr::ModuleLink</name>
    <message>
        <source>Listening on %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No module was heard at any serial port</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The module is in configuration mode</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Step %1: the command is too long and was not sent</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The command is too long and was not sent</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The line is lost: %1</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ktr::ProblemPanel</name>
    <message>
        <source>No problems</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Problems: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>What the file or the module would choke on; a click on a row goes to its field</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Problems</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ktr::StatusLine</name>
    <message>
        <source>modified</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>There are changes that are not saved</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Progress of the transmission</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ktr::SwitchPointModel</name>
    <message>
        <source>Target</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ktr::SwitchPointPage</name>
    <message>
        <source>Target</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The output that is switched, or the number that is called</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>When it switches</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Year, month, day, hour and minute, two digits each</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The limit value that it reacts to, 1 to 20</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Number that the target is set to</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Minutes, 1 to 525600 (a year)</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ktr::TestPage</name>
    <message>
        <source>A command, up to %1 characters; Enter sends it, Up and Down bring back earlier ones</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The module confirms each command of a transmission</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Sets the module&apos;s clock by this computer&apos;s</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Sends k, or K where an answer is wanted</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Fast history export</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show the conversation</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Sends %1</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ktr::frmAbout</name>
    <message>
        <source>Sets up and watches telemetry and alarm modules.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ktr::frmSettings</name>
    <message>
        <source>Appearance</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Follow the system</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Light</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Dark</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ktr::frm_preview</name>
    <message>
        <source>Entries in use</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Only the limit values and switch points that are in use</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>All entries</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>All 20 limit values and 20 switch points</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Zoom out</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Zoom in</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Fit page</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Fit width</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Previous page</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Next page</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save as PDF</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save as PDF…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Close</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Page</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Page, 1 to %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>PDF documents</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Saved as %1</source>
        <translation type="unfinished"></translation>
    </message>
</context>
</TS>
