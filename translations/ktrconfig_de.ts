<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE" sourcelanguage="en">
<context>
    <name>BesideList</name>
    <message>
        <source>; and %L1 more</source>
        <translation>; und %L1 weitere</translation>
    </message>
</context>
<context>
    <name>Comparison</name>
    <message>
        <source>yes</source>
        <translation>ja</translation>
    </message>
    <message>
        <source>no</source>
        <translation>nein</translation>
    </message>
    <message>
        <source>Order</source>
        <translation>Reihenfolge</translation>
    </message>
    <message>
        <source>Last edit</source>
        <translation>Letzte Änderung</translation>
    </message>
</context>
<context>
    <name>DatagramLoss</name>
    <message>
        <source>the flood is over</source>
        <translation>die Flut ist vorbei</translation>
    </message>
    <message>
        <source>floods: datagrams are dropped</source>
        <translation>überflutet: Datagramme werden verworfen</translation>
    </message>
    <message>
        <source>the flood is over: %1 datagrams dropped</source>
        <translation>die Flut ist vorbei: %1 Datagramme verworfen</translation>
    </message>
    <message>
        <source>floods: %1 datagrams dropped</source>
        <translation>überflutet: %1 Datagramme verworfen</translation>
    </message>
    <message>
        <source>the loss is over: %1 datagrams dropped</source>
        <translation>der Verlust ist vorbei: %1 Datagramme verworfen</translation>
    </message>
    <message>
        <source>%1 datagrams dropped</source>
        <translation>%1 Datagramme verworfen</translation>
    </message>
</context>
<context>
    <name>EndOfWatching</name>
    <message>
        <source>Close the operational mode? Nobody watches its stations then; stations that are online: %L1, alarms that are open: %L2.</source>
        <translation>Betriebsmodus schließen? Dann überwacht niemand seine Stationen; Stationen, die online sind: %L1, offene Alarme: %L2.</translation>
    </message>
</context>
<context>
    <name>Entries</name>
    <message>
        <source>There is no place %1</source>
        <translation>Es gibt keinen Platz %1</translation>
    </message>
    <message>
        <source>Limit values 1 to 16 watch a channel, 17 to 20 combine those: none of them can take the place of the others</source>
        <translation>Die Grenzwerte 1 bis 16 überwachen einen Kanal, 17 bis 20 verknüpfen diese: Keiner kann an den Platz der anderen</translation>
    </message>
    <message>
        <source>No switch point is free</source>
        <translation>Kein Schaltpunkt ist frei</translation>
    </message>
    <message>
        <source>None of the limit values 17 to 20 is free</source>
        <translation>Keiner der Grenzwerte 17 bis 20 ist frei</translation>
    </message>
    <message>
        <source>None of the limit values 1 to 16 is free</source>
        <translation>Keiner der Grenzwerte 1 bis 16 ist frei</translation>
    </message>
    <message>
        <source>Limit value %1 has no %2, which the clipboard has: 1 to 16 watch a channel, 17 to 20 combine those. Nothing was pasted</source>
        <translation>Grenzwert %1 hat kein Feld %2, das die Zwischenablage enthält: 1 bis 16 überwachen einen Kanal, 17 bis 20 verknüpfen diese. Nichts wurde eingefügt</translation>
    </message>
    <message>
        <source>%1 cannot be taken as %2. Nothing was pasted</source>
        <translation>%1 kann nicht als %2 übernommen werden. Nichts wurde eingefügt</translation>
    </message>
    <message>
        <source>There is no entry on the clipboard</source>
        <translation>In der Zwischenablage ist kein Eintrag</translation>
    </message>
    <message>
        <source>%1 entries have no room from %2 on. Nothing was pasted</source>
        <translation>%1 Einträge haben ab %2 keinen Platz. Nichts wurde eingefügt</translation>
    </message>
    <message>
        <source>Limit value %1 has no place at %2: 1 to 16 watch a channel, 17 to 20 combine those. Nothing was pasted</source>
        <translation>Grenzwert %1 hat keinen Platz bei %2: 1 bis 16 überwachen einen Kanal, 17 bis 20 verknüpfen diese. Nichts wurde eingefügt</translation>
    </message>
    <message>
        <source>There is no column %1. Nothing was pasted</source>
        <translation>Es gibt keine Spalte %1. Nichts wurde eingefügt</translation>
    </message>
    <message>
        <source>The clipboard has no entries: neither headings nor all %1 columns. Nothing was pasted</source>
        <translation>In der Zwischenablage sind keine Einträge: weder Überschriften noch alle %1 Spalten. Nichts wurde eingefügt</translation>
    </message>
    <message>
        <source>Row %1, %2: %3 is not understood. Nothing was pasted</source>
        <translation>Zeile %1, %2: %3 ist nicht verständlich. Nichts wurde eingefügt</translation>
    </message>
    <message>
        <source>What is on the clipboard is too long for entries. Nothing was pasted</source>
        <translation>Der Inhalt der Zwischenablage ist zu lang für Einträge. Nichts wurde eingefügt</translation>
    </message>
    <message>
        <source>%1. Ctrl+Z takes it back</source>
        <translation>%1. Strg+Z nimmt es zurück</translation>
    </message>
</context>
<context>
    <name>Export</name>
    <message>
        <source>Station</source>
        <translation>Station</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Zeit</translation>
    </message>
    <message>
        <source>Input</source>
        <translation>Eingang</translation>
    </message>
    <message>
        <source>Input name</source>
        <translation>Eingangsname</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Wert</translation>
    </message>
    <message>
        <source>Received</source>
        <translation>Empfangen</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>Count</source>
        <translation>Anzahl</translation>
    </message>
    <message>
        <source>State</source>
        <translation>Status</translation>
    </message>
    <message>
        <source>Acknowledged</source>
        <translation>Quittiert</translation>
    </message>
    <message>
        <source>not acknowledged</source>
        <translation>nicht quittiert</translation>
    </message>
    <message>
        <source>acknowledged</source>
        <translation>quittiert</translation>
    </message>
    <message>
        <source>no alarm</source>
        <translation>kein Alarm</translation>
    </message>
    <message>
        <source>Recipient</source>
        <translation>Empfänger</translation>
    </message>
</context>
<context>
    <name>FieldNames</name>
    <message>
        <source>is neither yes (1) nor no (0)</source>
        <translation>ist weder ja (1) noch nein (0)</translation>
    </message>
    <message>
        <source>is out of range</source>
        <translation>liegt außerhalb des Bereichs</translation>
    </message>
    <message>
        <source>is none of the choices</source>
        <translation>gehört nicht zur Auswahl</translation>
    </message>
    <message>
        <source>whole number from %1 to %2</source>
        <translation>ganze Zahl von %1 bis %2</translation>
    </message>
    <message>
        <source>cannot be stored</source>
        <translation>kann nicht gespeichert werden</translation>
    </message>
    <message>
        <source>does not begin with %1, as all modules&apos; do</source>
        <translation>beginnt nicht mit %1 wie die aller Module</translation>
    </message>
    <message>
        <source>is no address of six bytes, as %1-01-02-03</source>
        <translation>ist keine Adresse aus sechs Bytes wie %1-01-02-03</translation>
    </message>
    <message>
        <source>has &quot;%1&quot;, which is no date of the form YYMMDD</source>
        <translation>enthält „%1“, das kein Datum der Form JJMMTT ist</translation>
    </message>
    <message>
        <source>are more than %1 dates</source>
        <translation>sind mehr als %1 Daten</translation>
    </message>
    <message>
        <source>there is no field &quot;%1&quot;; the nearest: %2</source>
        <translation>es gibt kein Feld „%1“; die nächsten: %2</translation>
    </message>
    <message>
        <source>more than one field is called &quot;%1&quot;: %2</source>
        <translation>mehr als ein Feld heißt „%1“: %2</translation>
    </message>
</context>
<context>
    <name>Fields</name>
    <message>
        <source>whole number from %1 to %2</source>
        <translation>ganze Zahl von %1 bis %2</translation>
    </message>
    <message>
        <source>number from %1 to %2</source>
        <translation>Zahl von %1 bis %2</translation>
    </message>
    <message>
        <source>whole number from %1</source>
        <translation>ganze Zahl ab %1</translation>
    </message>
    <message>
        <source>number from %1</source>
        <translation>Zahl ab %1</translation>
    </message>
    <message>
        <source>number</source>
        <translation>Zahl</translation>
    </message>
    <message>
        <source>, in minutes</source>
        <translation>, in Minuten</translation>
    </message>
    <message>
        <source>, in the unit of the channel</source>
        <translation>, in der Einheit des Kanals</translation>
    </message>
    <message>
        <source>Who answers for this configuration</source>
        <translation>Wer für diese Konfiguration verantwortlich ist</translation>
    </message>
    <message>
        <source>Every edit writes its date and time here</source>
        <translation>Jede Änderung trägt hier Datum und Uhrzeit ein</translation>
    </message>
    <message>
        <source>Any text; a new configuration is given the date of today</source>
        <translation>Beliebiger Text; eine neue Konfiguration erhält das heutige Datum</translation>
    </message>
    <message>
        <source>Any text about this configuration</source>
        <translation>Beliebiger Text zu dieser Konfiguration</translation>
    </message>
    <message>
        <source>The conversation with the module is appended to this file</source>
        <translation>Der Datenverkehr mit dem Modul wird an diese Datei angehängt</translation>
    </message>
    <message>
        <source>The module&apos;s archive is appended to this file (*.csv)</source>
        <translation>Das Archiv des Moduls wird an diese Datei angehängt (*.csv)</translation>
    </message>
    <message>
        <source>Name under which the module reports; ä, ö, ü and ß become ae, oe, ue and ss</source>
        <translation>Name, unter dem sich das Modul meldet; ä, ö, ü, ß werden zu ae, oe, ue, ss</translation>
    </message>
    <message>
        <source>Cycle in which the module reports that it is alive</source>
        <translation>Zyklus, in dem das Modul meldet, dass es in Betrieb ist</translation>
    </message>
    <message>
        <source>Shown as recipient of notifications and as target of switch points</source>
        <translation>Erscheint als Empfänger von Meldungen und als Ziel von Schaltpunkten</translation>
    </message>
    <message>
        <source>What the value is compared with</source>
        <translation>Womit der Wert verglichen wird</translation>
    </message>
    <message>
        <source>How far the value must fall or rise back</source>
        <translation>Wie weit der Wert zurückgehen muss</translation>
    </message>
    <message>
        <source>How the value is compared with the limit</source>
        <translation>Wie der Wert mit dem Grenzwert verglichen wird</translation>
    </message>
    <message>
        <source>Reference</source>
        <translation>Bezug</translation>
    </message>
    <message>
        <source>Time between two messages</source>
        <translation>Zeit zwischen zwei Meldungen</translation>
    </message>
    <message>
        <source>Time between two archive entries, 0 for none by time</source>
        <translation>Zeit zwischen zwei Archiveinträgen, 0: keine nach Zeit</translation>
    </message>
    <message>
        <source>Change that triggers an archive entry</source>
        <translation>Änderung, die einen Archiveintrag auslöst</translation>
    </message>
    <message>
        <source>Count the pulses of this input</source>
        <translation>Impulse dieses Eingangs zählen</translation>
    </message>
    <message>
        <source>Pulses that count as one</source>
        <translation>Impulse, die als einer zählen</translation>
    </message>
    <message>
        <source>Invert the counted signal</source>
        <translation>Das gezählte Signal umkehren</translation>
    </message>
    <message>
        <source>Count the operating hours of this input</source>
        <translation>Betriebsstunden dieses Eingangs zählen</translation>
    </message>
    <message>
        <source>Send start and output values</source>
        <translation>Start- und Ausgangswerte senden</translation>
    </message>
    <message>
        <source>Without it a transmission leaves the inputs&apos; counters and the outputs as they are; the outputs&apos; operating hours are sent all the same</source>
        <translation>Ohne dies bleiben bei einer Übertragung die Zähler der Eingänge und die Ausgänge, wie sie sind; die Betriebsstunden der Ausgänge werden trotzdem gesendet</translation>
    </message>
    <message>
        <source>Value shown at a signal of 0</source>
        <translation>Angezeigter Wert bei einem Signal von 0</translation>
    </message>
    <message>
        <source>Change of the value with each step of the signal</source>
        <translation>Änderung des Wertes je Schritt des Signals</translation>
    </message>
    <message>
        <source>Target</source>
        <translation>Ziel</translation>
    </message>
    <message>
        <source>Time from one switching to the next, less than a year</source>
        <translation>Zeit von einem Schalten zum nächsten, weniger als ein Jahr</translation>
    </message>
    <message>
        <source>What the target is set to</source>
        <translation>Worauf das Ziel gesetzt wird</translation>
    </message>
    <message>
        <source>The limit value that the switch point reacts to</source>
        <translation>Der Grenzwert, auf den reagiert wird</translation>
    </message>
    <message>
        <source>The input or output that is watched; &quot;ungültig&quot;, so called in every language, is none</source>
        <translation>Der Ein- oder Ausgang, der überwacht wird; „ungültig“ (so in jeder Sprache) ist keiner</translation>
    </message>
    <message>
        <source>The output that is switched, or the number that is called; &quot;ungültig&quot;, so called in every language, is none</source>
        <translation>Der Ausgang, der geschaltet, oder die Nummer, die angerufen wird; „ungültig“ (so in jeder Sprache) ist nichts davon</translation>
    </message>
    <message>
        <source>yes or no</source>
        <translation>ja oder nein</translation>
    </message>
    <message>
        <source>one of those offered</source>
        <translation>Auswahl</translation>
    </message>
    <message>
        <source>%1; may be empty</source>
        <translation>%1; darf leer sein</translation>
    </message>
    <message>
        <source>stays as it was</source>
        <translation>bleibt, wie es war</translation>
    </message>
    <message>
        <source>filled in by the program</source>
        <translation>trägt das Programm ein</translation>
    </message>
    <message>
        <source>empty</source>
        <translation>leer</translation>
    </message>
    <message>
        <source>Field</source>
        <translation>Feld</translation>
    </message>
    <message>
        <source>Meaning</source>
        <translation>Bedeutung</translation>
    </message>
    <message>
        <source>Values</source>
        <translation>Werte</translation>
    </message>
    <message>
        <source>After &quot;new&quot;</source>
        <translation>Nach „Neu“</translation>
    </message>
    <message>
        <source>In the file</source>
        <translation>In der Datei</translation>
    </message>
    <message>
        <source>The PIN of the SIM card in the module</source>
        <translation>Die PIN der SIM-Karte im Modul</translation>
    </message>
    <message>
        <source>4 to 8 digits; may be empty</source>
        <translation>4 bis 8 Ziffern; darf leer sein</translation>
    </message>
    <message>
        <source>Which kind of module it is, as it reports by itself</source>
        <translation>Welche Art von Modul es ist, wie es sich selbst meldet</translation>
    </message>
    <message>
        <source>text on one line without a comma</source>
        <translation>Text auf einer Zeile, ohne Komma</translation>
    </message>
    <message>
        <source>The number that the module notifies, in international form</source>
        <translation>Die Nummer, die das Modul benachrichtigt, in internationaler Form</translation>
    </message>
    <message>
        <source>+ and 7 to 15 digits</source>
        <translation>+ und 7 bis 15 Ziffern</translation>
    </message>
    <message>
        <source>What the module sends; ä, ö, ü and ß become ae, oe, ue and ss</source>
        <translation>Was das Modul sendet; aus ä, ö, ü und ß werden ae, oe, ue und ss</translation>
    </message>
    <message>
        <source>text on one line; the whole command has room for 160 characters</source>
        <translation>Text auf einer Zeile; der ganze Befehl hat Platz für 160 Zeichen</translation>
    </message>
    <message>
        <source>How long the limit must be passed before the module notifies; on inputs that count pulses the count per interval</source>
        <translation>Wie lange die Grenze verletzt sein muss, bevor das Modul benachrichtigt; bei Eingängen, die Impulse zählen, die Zahl je Intervall</translation>
    </message>
    <message>
        <source>Which of the limit values 1 to 16 are combined</source>
        <translation>Welche der Grenzwerte 1 bis 16 verknüpft werden</translation>
    </message>
    <message>
        <source>a box for each</source>
        <translation>ein Kästchen für jeden</translation>
    </message>
    <message>
        <source>Which of the six administrators are notified</source>
        <translation>Welche der sechs Administratoren benachrichtigt werden</translation>
    </message>
    <message>
        <source>How often the message is repeated</source>
        <translation>Wie oft die Meldung wiederholt wird</translation>
    </message>
    <message>
        <source>%1 to %2 times</source>
        <translation>%1- bis %2-mal</translation>
    </message>
    <message>
        <source>Value that a transmission sets</source>
        <translation>Wert, den eine Übertragung setzt</translation>
    </message>
    <message>
        <source>What the scaled value is measured in, such as m</source>
        <translation>Worin der skalierte Wert gemessen wird, zum Beispiel m</translation>
    </message>
    <message>
        <source>From when on it switches, and at which time of day</source>
        <translation>Ab wann er schaltet, und zu welcher Uhrzeit</translation>
    </message>
    <message>
        <source>year, month, day, hour and minute, two digits each</source>
        <translation>Jahr, Monat, Tag, Stunde und Minute, je zwei Ziffern</translation>
    </message>
    <message>
        <source>On which days, in which rhythm or after which limit value it switches</source>
        <translation>An welchen Tagen, in welchem Takt oder nach welchem Grenzwert er schaltet</translation>
    </message>
    <message>
        <source>The address that the module is to have in its network</source>
        <translation>Die Adresse, die das Modul in seinem Netz haben soll</translation>
    </message>
    <message>
        <source>four numbers from 0 to 255 with dots between them</source>
        <translation>vier Zahlen von 0 bis 255 mit Punkten dazwischen</translation>
    </message>
    <message>
        <source>Which part of the address names the network</source>
        <translation>Welcher Teil der Adresse das Netz bezeichnet</translation>
    </message>
    <message>
        <source>A byte of the hardware address that must be the module&apos;s own; editable in expert mode</source>
        <translation>Ein Byte der Hardwareadresse, die dem Modul allein gehören muss; im Expertenmodus zu bearbeiten</translation>
    </message>
    <message>
        <source>two hexadecimal digits</source>
        <translation>zwei hexadezimale Ziffern</translation>
    </message>
    <message>
        <source>text, also of several lines</source>
        <translation>Text, auch mehrzeilig</translation>
    </message>
    <message>
        <source>text on one line</source>
        <translation>Text auf einer Zeile</translation>
    </message>
</context>
<context>
    <name>FieldsInFiles</name>
    <message>
        <source>%1 is named twice</source>
        <translation>%1 ist zweimal genannt</translation>
    </message>
    <message>
        <source>%1; files saved before: %2</source>
        <translation>%1; vorher gespeicherte Dateien: %2</translation>
    </message>
    <message>
        <source>what stood in %1 is kept as %2</source>
        <translation>was in %1 stand, ist als %2 aufgehoben</translation>
    </message>
</context>
<context>
    <name>Files</name>
    <message>
        <source>%1: &quot;%2&quot; is of no use here, &quot;%3&quot; is kept</source>
        <translation>%1: „%2“ ist hier nicht verwendbar, „%3“ bleibt</translation>
    </message>
    <message>
        <source>not a configuration</source>
        <translation>keine Konfiguration</translation>
    </message>
    <message>
        <source>there is no file name to save under</source>
        <translation>es gibt keinen Dateinamen zum Speichern</translation>
    </message>
    <message>
        <source>there is a character of number %1</source>
        <translation>enthält ein Zeichen mit der Nummer %1</translation>
    </message>
    <message>
        <source>a document type declaration is not accepted</source>
        <translation>eine Dokumenttyp-Deklaration wird nicht angenommen</translation>
    </message>
    <message>
        <source>an element has more than %1 attributes</source>
        <translation>ein Element hat mehr als %1 Attribute</translation>
    </message>
    <message>
        <source>the encoding &quot;%1&quot; is not known</source>
        <translation>die Kodierung „%1“ ist nicht bekannt</translation>
    </message>
    <message>
        <source>the bytes are not in the encoding of the document</source>
        <translation>die Bytes entsprechen nicht der Kodierung des Dokuments</translation>
    </message>
    <message>
        <source>line %1, column %2: %3</source>
        <translation>Zeile %1, Spalte %2: %3</translation>
    </message>
    <message>
        <source>%1 bytes without a line end dropped</source>
        <translation>%1 Bytes ohne Zeilenende verworfen</translation>
    </message>
    <message>
        <source>there is no file name</source>
        <translation>es gibt keinen Dateinamen</translation>
    </message>
    <message>
        <source>is a folder</source>
        <translation>ist ein Ordner</translation>
    </message>
    <message>
        <source>is longer than %1 MiB</source>
        <translation>ist länger als %1 MiB</translation>
    </message>
    <message>
        <source>the port is already in use</source>
        <translation>der Port ist bereits belegt</translation>
    </message>
    <message>
        <source>the system allows no more connections at a time</source>
        <translation>das System lässt nicht mehr Verbindungen zugleich zu</translation>
    </message>
    <message>
        <source>there is no such port</source>
        <translation>diesen Port gibt es nicht</translation>
    </message>
    <message>
        <source>is no serial port</source>
        <translation>ist kein serieller Port</translation>
    </message>
    <message>
        <source>not written: no font is installed</source>
        <translation>nicht geschrieben: es ist keine Schrift installiert</translation>
    </message>
    <message>
        <source>a doubled datagram dropped</source>
        <translation>ein verdoppeltes Datagramm verworfen</translation>
    </message>
    <message>
        <source>a line dropped: too many wait to be sent</source>
        <translation>eine Zeile verworfen: zu viele warten auf das Senden</translation>
    </message>
    <message>
        <source>%1: the name is not found</source>
        <translation>%1: der Name wurde nicht gefunden</translation>
    </message>
    <message>
        <source>%1: is no address of a module</source>
        <translation>%1: ist keine Adresse eines Moduls</translation>
    </message>
    <message>
        <source>The history is not exported: %1: %2</source>
        <translation>Die Historie wird nicht exportiert: %1: %2</translation>
    </message>
    <message>
        <source>The history is not exported: no file is chosen for it</source>
        <translation>Die Historie wird nicht exportiert: Es ist keine Datei dafür gewählt</translation>
    </message>
    <message>
        <source>is not a file</source>
        <translation>ist keine Datei</translation>
    </message>
    <message>
        <source>The history is exported again: %1</source>
        <translation>Die Historie wird wieder exportiert: %1</translation>
    </message>
    <message>
        <source>there is no room for it</source>
        <translation>dafür ist kein Platz</translation>
    </message>
    <message>
        <source>an SMS without an end was dropped: %1 characters</source>
        <translation>eine SMS ohne Ende wurde verworfen: %1 Zeichen</translation>
    </message>
    <message>
        <source>nothing was heard from the module for %1 s</source>
        <translation>vom Modul war %1 s lang nichts zu hören</translation>
    </message>
    <message>
        <source>no progress for %1 s; heard: %2 bytes without a line end</source>
        <translation>seit %1 s kein Fortschritt; gehört: %2 Bytes ohne Zeilenende</translation>
    </message>
    <message>
        <source>no progress for %1 s; heard: %2 lines, the last one &quot;%3&quot;</source>
        <translation>seit %1 s kein Fortschritt; gehört: %2 Zeilen, zuletzt „%3“</translation>
    </message>
    <message>
        <source>what stands in %1 cannot be kept as a backup: %2</source>
        <translation>was in %1 steht, kann nicht als Sicherung aufgehoben werden: %2</translation>
    </message>
    <message>
        <source>Archive %1: &quot;%2&quot; is no time; the records from there on are exported without one</source>
        <translation>Archiv %1: „%2“ ist keine Zeit; die Datensätze ab dort werden ohne Zeit exportiert</translation>
    </message>
    <message>
        <source>Archive %1: &quot;%2&quot; is no whole record and is not exported</source>
        <translation>Archiv %1: „%2“ ist kein ganzer Datensatz und wird nicht exportiert</translation>
    </message>
    <message>
        <source>Archive %1: a line without a record</source>
        <translation>Archiv %1: eine Zeile ohne Datensatz</translation>
    </message>
    <message>
        <source>would be longer than %1 MiB, which is not read again</source>
        <translation>würde länger als %1 MiB und könnte nicht wieder gelesen werden</translation>
    </message>
    <message>
        <source>a document type declaration was passed over</source>
        <translation>eine Dokumenttyp-Deklaration wurde übergangen</translation>
    </message>
    <message>
        <source>damaged places, whose elements were left out: %1, the first at byte %2</source>
        <translation>beschädigte Stellen, deren Elemente ausgelassen wurden: %1, die erste bei Byte %2</translation>
    </message>
    <message>
        <source>what stood inside of elements was left out: %1</source>
        <translation>was innerhalb von Elementen stand, wurde ausgelassen: %1</translation>
    </message>
    <message>
        <source>defects that cost nothing: %1</source>
        <translation>Schäden, durch die nichts fehlt: %1</translation>
    </message>
    <message>
        <source>its end is missing; what stands before that is used</source>
        <translation>das Ende fehlt; was davor steht, wird verwendet</translation>
    </message>
    <message>
        <source>there is a reference to a character that does not exist</source>
        <translation>es wird auf ein Zeichen verwiesen, das es nicht gibt</translation>
    </message>
    <message>
        <source>the document is not a single element &quot;KTR&quot;</source>
        <translation>das Dokument ist kein einzelnes Element „KTR“</translation>
    </message>
    <message>
        <source>an attribute of &quot;%1&quot; stands twice</source>
        <translation>ein Attribut von „%1“ steht zweimal da</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is not empty</source>
        <translation>„%1“ ist nicht leer</translation>
    </message>
    <message>
        <source>there is text between the elements</source>
        <translation>zwischen den Elementen steht Text</translation>
    </message>
    <message>
        <source>at byte %1: %2</source>
        <translation>bei Byte %1: %2</translation>
    </message>
    <message>
        <source>is damaged; times of notifications that are known: %1</source>
        <translation>ist beschädigt; Zeiten von Meldungen, die bekannt sind: %1</translation>
    </message>
    <message>
        <source>another program</source>
        <translation>einem anderen Programm</translation>
    </message>
    <message>
        <source>%1 on %2, %3, since %4</source>
        <translation>%1 auf %2, %3, seit %4</translation>
    </message>
    <message>
        <source>is longer than the memory that is free</source>
        <translation>ist länger als der freie Speicher</translation>
    </message>
    <message>
        <source>they stand behind nodes of: %1</source>
        <translation>sie stehen hinter Knoten von: %1</translation>
    </message>
    <message>
        <source>none of its %1 nodes belongs to a station of the list</source>
        <translation>keiner ihrer %1 Knoten gehört zu einer Station der Liste</translation>
    </message>
    <message>
        <source>nodes that belong nowhere were left out: %1 (%2)</source>
        <translation>Knoten, die nirgendwohin gehören, wurden ausgelassen: %1 (%2)</translation>
    </message>
    <message>
        <source>an &quot;&amp;&quot; or &quot;&lt;&quot; that stands for itself was taken as text</source>
        <translation>ein „&amp;“ oder „&lt;“, das für sich steht, wurde als Text genommen</translation>
    </message>
    <message>
        <source>nodes with a value that cannot be read, which was left out: %1 (%2)</source>
        <translation>Knoten mit einem Wert, der nicht zu lesen ist und ausgelassen wurde: %1 (%2)</translation>
    </message>
    <message>
        <source>%1 and %2 more</source>
        <translation>%1 und %2 weitere</translation>
    </message>
    <message>
        <source>is no file, but a pipe, a device or the like</source>
        <translation>ist keine Datei, sondern eine Pipe, ein Gerät oder Ähnliches</translation>
    </message>
    <message>
        <source>There are two stations &quot;%1&quot; in the list; the second was left out</source>
        <translation>In der Liste stehen zwei Stationen „%1“; die zweite wurde weggelassen</translation>
    </message>
    <message>
        <source>%1: stations that were damaged were rebuilt from what stands under them. Their addresses, schedules and whether they are online have to be checked: %2</source>
        <translation>%1: Beschädigte Stationen wurden aus dem wiederhergestellt, was unter ihnen steht. Ihre Adressen, ihre Zeitpläne und ob sie online sind, müssen geprüft werden: %2</translation>
    </message>
    <message>
        <source>is a link</source>
        <translation>ist eine Verknüpfung</translation>
    </message>
    <message>
        <source>there is no element</source>
        <translation>es gibt kein Element</translation>
    </message>
    <message>
        <source>a comment or another section has no end</source>
        <translation>ein Kommentar oder ein anderer Abschnitt hat kein Ende</translation>
    </message>
    <message>
        <source>an attribute cannot be read</source>
        <translation>ein Attribut ist nicht zu lesen</translation>
    </message>
    <message>
        <source>an element has no end, or another one&apos;s</source>
        <translation>ein Element hat kein Ende oder das eines anderen</translation>
    </message>
    <message>
        <source>the memory does not suffice</source>
        <translation>der Speicher reicht nicht</translation>
    </message>
    <message>
        <source>what stands there is no element</source>
        <translation>was dort steht, ist kein Element</translation>
    </message>
    <message>
        <source>no element of a configuration was found in it</source>
        <translation>darin ist kein Element einer Konfiguration</translation>
    </message>
    <message>
        <source>does not go on from the list of stations that is there</source>
        <translation>setzt nicht die vorhandene Stationsliste fort</translation>
    </message>
    <message>
        <source>is damaged; changes that were taken up: %1</source>
        <translation>ist beschädigt; übernommene Änderungen: %1</translation>
    </message>
    <message>
        <source>%1: the record is damaged; it is kept as %2, rows saved of it: %3</source>
        <translation>%1: Die Aufzeichnung ist beschädigt; sie ist als %2 aufbewahrt, daraus gerettete Zeilen: %3</translation>
    </message>
    <message>
        <source>The list of stations was edited or replaced since it was written; it is followed</source>
        <translation>Die Stationsliste wurde bearbeitet oder ersetzt, seit sie geschrieben wurde; es gilt, was in ihr steht</translation>
    </message>
    <message>
        <source>its record does not know it as it is now</source>
        <translation>In der Aufzeichnung steht sie nicht so, wie sie jetzt ist</translation>
    </message>
    <message>
        <source>%1: the record was removed or replaced; it was written again</source>
        <translation>%1: Die Aufzeichnung wurde entfernt oder ersetzt; sie wurde neu geschrieben</translation>
    </message>
    <message>
        <source>what stood in its place is kept as %1</source>
        <translation>was an ihrer Stelle stand, ist als %1 aufgehoben</translation>
    </message>
    <message>
        <source>There was no record of this list of stations; a new one begins</source>
        <translation>Zu dieser Stationsliste gab es keine Aufzeichnung; eine neue beginnt</translation>
    </message>
    <message>
        <source>names of inputs and outputs: line %1, %2, is not understood</source>
        <translation>Namen der Ein- und Ausgänge: Zeile %1, %2, ist nicht verständlich</translation>
    </message>
    <message>
        <source>is no folder</source>
        <translation>ist kein Ordner</translation>
    </message>
    <message>
        <source>the folder cannot be made</source>
        <translation>der Ordner kann nicht angelegt werden</translation>
    </message>
    <message>
        <source>there is no folder for it</source>
        <translation>es gibt keinen Ordner dafür</translation>
    </message>
    <message>
        <source>is empty</source>
        <translation>ist leer</translation>
    </message>
    <message>
        <source>is not there</source>
        <translation>ist nicht da</translation>
    </message>
    <message>
        <source>may not be read by this user</source>
        <translation>darf dieser Benutzer nicht lesen</translation>
    </message>
</context>
<context>
    <name>FleetList</name>
    <message>
        <source>has no column &quot;file&quot;</source>
        <translation>hat keine Spalte „file“ oder „datei“</translation>
    </message>
    <message>
        <source>row %1</source>
        <translation>Zeile %1</translation>
    </message>
    <message>
        <source>%1: names no file</source>
        <translation>%1: nennt keine Datei</translation>
    </message>
    <message>
        <source>has no *.xml</source>
        <translation>hat keine *.xml</translation>
    </message>
    <message>
        <source>is no configuration</source>
        <translation>ist keine Konfiguration</translation>
    </message>
    <message>
        <source>is the configuration of &quot;%1&quot; and not of &quot;%2&quot;</source>
        <translation>ist die Konfiguration von „%1“ und nicht von „%2“</translation>
    </message>
    <message>
        <source>%1: &quot;%2&quot; is no address of a module</source>
        <translation>%1: „%2“ ist keine Adresse eines Moduls</translation>
    </message>
    <message>
        <source>the address %2 is that of %1, too</source>
        <translation>die Adresse %2 hat auch %1</translation>
    </message>
    <message>
        <source>the file %2 is that of %1, too</source>
        <translation>die Datei %2 hat auch %1</translation>
    </message>
    <message>
        <source>the identifier &quot;%2&quot; is that of %1, too</source>
        <translation>die Kennung „%2“ hat auch %1</translation>
    </message>
    <message>
        <source>is no table of results</source>
        <translation>ist keine Ergebnistabelle</translation>
    </message>
    <message>
        <source>the MAC address %2 is that of %1, too</source>
        <translation>die MAC-Adresse %2 ist auch die von %1</translation>
    </message>
    <message>
        <source>%1 files give their modules the IP address %2: %3</source>
        <translation>%1 Dateien geben ihren Modulen die IP-Adresse %2: %3</translation>
    </message>
</context>
<context>
    <name>FleetLook</name>
    <message>
        <source>no file has its name or address</source>
        <translation>keine Datei hat ihren Namen oder ihre Adresse</translation>
    </message>
    <message>
        <source>several files are its: %1</source>
        <translation>mehrere Dateien sind ihre: %1</translation>
    </message>
    <message>
        <source>no file is known</source>
        <translation>keine Datei bekannt</translation>
    </message>
</context>
<context>
    <name>Foretelling</name>
    <message>
        <source>The module&apos;s clock is set by a transmission alone and knows no summer time: it goes on as it is when the clocks change here.</source>
        <translation>Die Uhr des Moduls wird nur durch eine Übertragung gestellt und kennt keine Sommerzeit: Sie läuft weiter, wenn hier die Uhren umgestellt werden.</translation>
    </message>
    <message>
        <source>A switch point that comes back does nothing before the date of its start; from then on it switches at the start&apos;s time of day.</source>
        <translation>Ein wiederkehrender Schaltpunkt tut vor dem Datum seines Starts nichts; von da an schaltet er zur Uhrzeit des Starts.</translation>
    </message>
    <message>
        <source>&quot;Weekdays&quot; are Monday to Friday, the weekend is Saturday and Sunday.</source>
        <translation>„Wochentags“ heißt Montag bis Freitag, das Wochenende ist Samstag und Sonntag.</translation>
    </message>
    <message>
        <source>On a holiday the types that do not speak of holidays switch as on any other day.</source>
        <translation>An einem Feiertag schalten die Typen, die nicht von Feiertagen sprechen, wie an jedem anderen Tag.</translation>
    </message>
    <message>
        <source>Type 10 means working days: Monday to Friday, but no holiday.</source>
        <translation>Typ 10 meint Werktage: Montag bis Freitag, aber keinen Feiertag.</translation>
    </message>
    <message>
        <source>Periods are counted from the start, also when the module was off or was given the switch point later.</source>
        <translation>Perioden zählen vom Start an, auch wenn das Modul aus war oder den Schaltpunkt erst später bekam.</translation>
    </message>
    <message>
        <source>Of several switch points with the same target at the same time the one with the highest number comes last and decides.</source>
        <translation>Von mehreren Schaltpunkten mit demselben Ziel zur selben Zeit kommt der mit der höchsten Nummer zuletzt und entscheidet.</translation>
    </message>
    <message>
        <source>What an administrator gets whom a switch point calls, and what the switch point&apos;s value means there, is not known.</source>
        <translation>Was ein Administrator bekommt, den ein Schaltpunkt anruft, und was der Wert des Schaltpunkts dort bedeutet, ist nicht bekannt.</translation>
    </message>
    <message>
        <source>The delay of a limit value counts seconds.</source>
        <translation>Die Verzögerung eines Grenzwerts zählt Sekunden.</translation>
    </message>
    <message>
        <source>During the delay the limit must be passed all the time, without regard to the hysteresis; otherwise the delay begins anew.</source>
        <translation>Während der Verzögerung muss die Grenze ständig verletzt sein, ohne Rücksicht auf die Hysterese; sonst beginnt die Verzögerung von vorn.</translation>
    </message>
    <message>
        <source>On an input that counts pulses the value given here is compared as it is and at once; over which interval the module counts is not known.</source>
        <translation>An einem Eingang, der Impulse zählt, wird der hier gegebene Wert so, wie er ist, und sofort verglichen; über welches Intervall das Modul zählt, ist nicht bekannt.</translation>
    </message>
    <message>
        <source>&quot;=&quot; holds when value and limit are the same number; with a hysteresis it ends when they differ by more than that.</source>
        <translation>„=“ gilt, wenn Wert und Grenze dieselbe Zahl sind; mit einer Hysterese endet es, wenn sie um mehr als diese voneinander abweichen.</translation>
    </message>
    <message>
        <source>A limit value is over once the value has come back by the hysteresis or more.</source>
        <translation>Ein Grenzwert ist vorbei, sobald der Wert um die Hysterese oder mehr zurückgekommen ist.</translation>
    </message>
    <message>
        <source>What is beyond its limit from the beginning, as after a start of the module, counts like what passes it later.</source>
        <translation>Was von Anfang an jenseits seiner Grenze liegt, etwa nach einem Start des Moduls, zählt wie das, was sie später überschreitet.</translation>
    </message>
    <message>
        <source>When a limit value is over, nobody is told.</source>
        <translation>Wenn ein Grenzwert vorbei ist, wird niemand benachrichtigt.</translation>
    </message>
    <message>
        <source>A limit value without a text sends nothing.</source>
        <translation>Ein Grenzwert ohne Text sendet nichts.</translation>
    </message>
    <message>
        <source>A limit value that belongs to a combination sends its own notification all the same.</source>
        <translation>Ein Grenzwert, der zu einer Verknüpfung gehört, sendet seine eigene Meldung trotzdem.</translation>
    </message>
    <message>
        <source>A limit value on an output sees at once what a switch point sets there, in the same unit.</source>
        <translation>Ein Grenzwert auf einem Ausgang sieht sofort, was ein Schaltpunkt dort setzt, in derselben Einheit.</translation>
    </message>
    <message>
        <source>The value given for an inverted input is what its limit value sees.</source>
        <translation>Der Wert, der für einen invertierten Eingang gegeben wird, ist der, den sein Grenzwert sieht.</translation>
    </message>
    <message>
        <source>Counters of operating hours have the value that is given here and do not run.</source>
        <translation>Betriebsstundenzähler haben den hier gegebenen Wert und laufen nicht.</translation>
    </message>
    <message>
        <source>The alive cycle counts minutes from the beginning of the time that is played; 0 stands for none.</source>
        <translation>Der Alive-Zyklus zählt Minuten vom Anfang der gespielten Zeit an; 0 steht für keinen.</translation>
    </message>
    <message>
        <source>What an alive report says and who gets it is not known.</source>
        <translation>Was eine Alive-Meldung sagt und wer sie bekommt, ist nicht bekannt.</translation>
    </message>
    <message>
        <source>Of the two values of a record of the archive the second is the measured one.</source>
        <translation>Von den zwei Werten eines Archivsatzes ist der zweite der gemessene.</translation>
    </message>
    <message>
        <source>limit passed, delay until %1</source>
        <translation>Grenze verletzt, Verzögerung bis %1</translation>
    </message>
    <message>
        <source>back before the delay was over</source>
        <translation>zurück, bevor die Verzögerung um war</translation>
    </message>
    <message>
        <source>limit value stands</source>
        <translation>Grenzwert steht an</translation>
    </message>
    <message>
        <source>limit value is over</source>
        <translation>Grenzwert ist vorbei</translation>
    </message>
    <message>
        <source>notification</source>
        <translation>Meldung</translation>
    </message>
    <message>
        <source>repetition %1 of %2</source>
        <translation>Wiederholung %1 von %2</translation>
    </message>
    <message>
        <source>calls %1, value %2</source>
        <translation>ruft %1 an, Wert %2</translation>
    </message>
    <message>
        <source>alive report</source>
        <translation>Alive-Meldung</translation>
    </message>
    <message>
        <source>limit values and switch points chase each other without end; nothing is played from here on</source>
        <translation>Grenzwerte und Schaltpunkte lösen einander endlos aus; von hier an wird nichts gespielt</translation>
    </message>
    <message>
        <source> (has no number)</source>
        <translation> (hat keine Nummer)</translation>
    </message>
    <message>
        <source>limit value %1</source>
        <translation>Grenzwert %1</translation>
    </message>
    <message>
        <source> (all of %1)</source>
        <translation> (alle von %1)</translation>
    </message>
    <message>
        <source>switch point %1: %2</source>
        <translation>Schaltpunkt %1: %2</translation>
    </message>
    <message>
        <source>waits for its limit value</source>
        <translation>wartet auf seinen Grenzwert</translation>
    </message>
    <message>
        <source>switches on %1</source>
        <translation>schaltet am %1</translation>
    </message>
    <message>
        <source>switches no more</source>
        <translation>schaltet nicht mehr</translation>
    </message>
    <message>
        <source>its start is no time</source>
        <translation>sein Start ist keine Zeit</translation>
    </message>
    <message>
        <source>its period is not from a minute to a year</source>
        <translation>seine Periode liegt nicht zwischen einer Minute und einem Jahr</translation>
    </message>
    <message>
        <source>its type is not known</source>
        <translation>sein Typ ist nicht bekannt</translation>
    </message>
    <message>
        <source>switches too often; from %1 on it is left out</source>
        <translation>schaltet zu oft; ab %1 ist er weggelassen</translation>
    </message>
    <message>
        <source>its limit is no number</source>
        <translation>seine Grenze ist keine Zahl</translation>
    </message>
    <message>
        <source>its hysteresis is no number from 0 on</source>
        <translation>seine Hysterese ist keine Zahl ab 0</translation>
    </message>
    <message>
        <source>its delay is no number from 0 on</source>
        <translation>seine Verzögerung ist keine Zahl ab 0</translation>
    </message>
    <message>
        <source>its comparison is not known</source>
        <translation>sein Vergleich ist nicht bekannt</translation>
    </message>
    <message>
        <source>it combines a limit value that is not in use</source>
        <translation>er verknüpft einen Grenzwert, der nicht verwendet wird</translation>
    </message>
    <message>
        <source>%1 more lines cannot be used</source>
        <translation>%1 weitere Zeilen sind nicht brauchbar</translation>
    </message>
    <message>
        <source>the values are of %1 stations; which one is meant?</source>
        <translation>die Werte sind von %1 Stationen; welche ist gemeint?</translation>
    </message>
    <message>
        <source>there are no values: time, channel and value are expected in a line</source>
        <translation>es gibt keine Werte: Zeit, Kanal und Wert werden in einer Zeile erwartet</translation>
    </message>
    <message>
        <source>line %1: %2is no time</source>
        <translation>Zeile %1: %2ist keine Zeit</translation>
    </message>
    <message>
        <source>line %1: %2is no channel from 1 to 18</source>
        <translation>Zeile %1: %2ist kein Kanal von 1 bis 18</translation>
    </message>
    <message>
        <source>line %1: %2is no number</source>
        <translation>Zeile %1: %2ist keine Zahl</translation>
    </message>
    <message>
        <source>Type 15 switches when its limit value comes, after the delay, and type 16 when it is over, whatever the comparison is.</source>
        <translation>Typ 15 schaltet, wenn sein Grenzwert kommt, nach der Verzögerung, und Typ 16, wenn er vorbei ist, welcher Vergleich auch gewählt ist.</translation>
    </message>
    <message>
        <source>A notification is repeated only as long as its limit value stands, the first time one interval after it, and nobody deletes the module&apos;s notifications meanwhile.</source>
        <translation>Eine Meldung wird nur wiederholt, solange ihr Grenzwert ansteht, das erste Mal ein Intervall danach, und niemand löscht inzwischen die Meldungen des Moduls.</translation>
    </message>
    <message>
        <source>A combination comes when all of its limit values stand, each after its own delay, and is over when the first of them is.</source>
        <translation>Eine Verknüpfung kommt, wenn alle ihre Grenzwerte anstehen, jeder nach seiner eigenen Verzögerung, und ist vorbei, wenn der erste von ihnen es ist.</translation>
    </message>
    <message>
        <source>A switch point that comes back switches at the start&apos;s time of day on any date, also before that of its start.</source>
        <translation>Ein wiederkehrender Schaltpunkt schaltet zur Uhrzeit seines Starts an jedem Datum, auch vor dem seines Starts.</translation>
    </message>
    <message>
        <source>On a holiday the types that do not speak of holidays do not switch.</source>
        <translation>An einem Feiertag schalten die Typen nicht, die nicht von Feiertagen sprechen.</translation>
    </message>
    <message>
        <source>Type 10 means working days with Saturday: Monday to Saturday, but no holiday.</source>
        <translation>Typ 10 meint Werktage mit Samstag: Montag bis Samstag, aber keine Feiertage.</translation>
    </message>
    <message>
        <source>Of several switch points with the same target at the same time the one with the lowest number comes last and decides.</source>
        <translation>Von mehreren Schaltpunkten mit demselben Ziel zur selben Zeit kommt der mit der niedrigsten Nummer zuletzt und entscheidet.</translation>
    </message>
    <message>
        <source>The delay of a limit value counts minutes.</source>
        <translation>Die Verzögerung eines Grenzwerts zählt Minuten.</translation>
    </message>
    <message>
        <source>A limit value is over only once the value has come back by more than the hysteresis.</source>
        <translation>Ein Grenzwert ist erst vorbei, wenn der Wert um mehr als die Hysterese zurückgekommen ist.</translation>
    </message>
    <message>
        <source>What is beyond its limit from the beginning, as after a start of the module, stands without anybody being told.</source>
        <translation>Was von Anfang an jenseits seines Grenzwerts ist, wie nach einem Start des Moduls, steht an, ohne dass es jemandem gemeldet wird.</translation>
    </message>
    <message>
        <source>A combination comes when one of its limit values stands, and is over when the last of them is.</source>
        <translation>Eine Verknüpfung kommt, wenn einer ihrer Grenzwerte ansteht, und ist vorbei, wenn es der letzte von ihnen ist.</translation>
    </message>
    <message>
        <source>A limit value that belongs to a combination sends no notification of its own.</source>
        <translation>Ein Grenzwert, der zu einer Verknüpfung gehört, sendet keine eigene Meldung.</translation>
    </message>
    <message>
        <source>Type 15 switches when the value passes its limit upwards, type 16 when it does so downwards: with the comparison &quot;&lt;&quot; type 16 switches when the limit value comes.</source>
        <translation>Typ 15 schaltet, wenn der Wert seinen Grenzwert nach oben passiert, Typ 16, wenn nach unten: Mit dem Vergleich &quot;&lt;&quot; schaltet Typ 16, wenn der Grenzwert kommt.</translation>
    </message>
    <message>
        <source>A limit value on an output does not see what a switch point sets there.</source>
        <translation>Ein Grenzwert auf einem Ausgang sieht nicht, was ein Schaltpunkt dort setzt.</translation>
    </message>
    <message>
        <source>The alive cycle counts hours from the beginning of the time that is played; 0 stands for none.</source>
        <translation>Der Alive-Zyklus zählt Stunden ab dem Beginn der gespielten Zeit; 0 steht für keinen.</translation>
    </message>
</context>
<context>
    <name>Help</name>
    <message>
        <source>en</source>
        <comment>the manual&apos;s language</comment>
        <extracomment>The language of the manual that is shown: &quot;en&quot;, or &quot;de&quot; in German.</extracomment>
        <translation>de</translation>
    </message>
</context>
<context>
    <name>ListDuty</name>
    <message>
        <source>Stations of the list have no keeper</source>
        <translation>Stationen der Liste haben keinen Wächter</translation>
    </message>
    <message>
        <source>Stations had no keeper</source>
        <translation>Stationen hatten keinen Wächter</translation>
    </message>
    <message>
        <source>the keeper that told it is gone</source>
        <translation>der Wächter, der ihn gemeldet hat, ist nicht mehr da</translation>
    </message>
</context>
<context>
    <name>ListFollower</name>
    <message>
        <source>%1: the server does not answer</source>
        <translation>%1: Der Server antwortet nicht</translation>
    </message>
</context>
<context>
    <name>NetworkAdapter</name>
    <message>
        <source>No network adapter of this computer is connected</source>
        <translation>Kein Netzwerkadapter dieses Rechners ist verbunden</translation>
    </message>
    <message>
        <source>Adapters of this computer: %1</source>
        <translation>Adapter dieses Rechners: %1</translation>
    </message>
    <message>
        <source>Through %1</source>
        <translation>Über %1</translation>
    </message>
    <message>
        <source>In none of this computer&apos;s networks, so through a router: %1</source>
        <translation>In keinem der Netze dieses Rechners, also über einen Router: %1</translation>
    </message>
</context>
<context>
    <name>OutsideTexts</name>
    <message>
        <source>%1… [%2 characters left out] …%3</source>
        <translation>%1… [%2 Zeichen ausgelassen] …%3</translation>
    </message>
    <message>
        <source>… and %1 lines more</source>
        <translation>… und %1 weitere Zeilen</translation>
    </message>
</context>
<context>
    <name>Printing</name>
    <message>
        <source>Not printed: there are %1 pages, none of which was chosen.</source>
        <translation>Nicht gedruckt: Von %1 Seiten wurde keine gewählt.</translation>
    </message>
    <message>
        <source>Not printed: the printer &quot;%1&quot; cannot be used.</source>
        <translation>Nicht gedruckt: Der Drucker „%1“ ist nicht verwendbar.</translation>
    </message>
    <message>
        <source>The printer &quot;%1&quot; stopped.</source>
        <translation>Der Drucker „%1“ hat abgebrochen.</translation>
    </message>
    <message>
        <source>No printer is installed. The print preview can save the configuration as a PDF.</source>
        <translation>Es ist kein Drucker eingerichtet. Die Druckvorschau kann die Konfiguration als PDF speichern.</translation>
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
        <translation>ist kein Zeitpunkt der Form JJMMTThhmm</translation>
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
        <source>is none of the choices</source>
        <translation>gehört nicht zur Auswahl</translation>
    </message>
    <message>
        <source>is no date of the form YYMMDD</source>
        <translation>ist kein Datum der Form JJMMTT</translation>
    </message>
    <message>
        <source>is no whole number of minutes</source>
        <translation>ist keine ganze Zahl von Minuten</translation>
    </message>
    <message>
        <source>is no whole number from %1 to %2</source>
        <translation>ist keine ganze Zahl von %1 bis %2</translation>
    </message>
    <message>
        <source>makes all values the same</source>
        <translation>macht alle Werte gleich</translation>
    </message>
    <message>
        <source>has a control character at place %1</source>
        <translation>enthält an Stelle %1 ein Steuerzeichen</translation>
    </message>
    <message>
        <source>has &quot;%1&quot; at place %2, which no SMS carries</source>
        <translation>enthält an Stelle %2 „%1“, das keine SMS überträgt</translation>
    </message>
    <message>
        <source>has &quot;%1&quot; at place %2; write &quot;%3&quot; in an SMS</source>
        <translation>enthält an Stelle %2 „%1“; in einer SMS steht dafür „%3“</translation>
    </message>
    <message>
        <source>has no country code: none begins with 0</source>
        <translation>hat keine Landesvorwahl: keine beginnt mit 0</translation>
    </message>
    <message>
        <source>no complete phone number, but a recipient of limit value %1</source>
        <translation>keine vollständige Telefonnummer, aber Empfänger von Grenzwert %1</translation>
    </message>
    <message>
        <source>no complete phone number, but called by switch point %1</source>
        <translation>keine vollständige Telefonnummer, wird aber von Schaltpunkt %1 angerufen</translation>
    </message>
    <message>
        <source>is the number of administrator %1, too: limit value %2 notifies both</source>
        <translation>ist auch die Nummer von Administrator %1: Grenzwert %2 benachrichtigt beide</translation>
    </message>
    <message>
        <source>there is a text but no combined limit value</source>
        <translation>ein Meldungstext ist angegeben, aber kein verknüpfter Grenzwert</translation>
    </message>
    <message>
        <source>it combines limit value %1, which is not in use</source>
        <translation>verknüpft ist Grenzwert %1, der nicht verwendet wird</translation>
    </message>
    <message>
        <source>is neither 0 nor 1: the channel has no other values</source>
        <translation>ist weder 0 noch 1: andere Werte hat der Kanal nicht</translation>
    </message>
    <message>
        <source>is below 0, where no counter goes</source>
        <translation>ist kleiner als 0; so weit zählt kein Zähler</translation>
    </message>
    <message>
        <source>the channel is never %1 %2</source>
        <translation>der Kanal ist nie %1 %2</translation>
    </message>
    <message>
        <source>there are recipients but no text</source>
        <translation>Empfänger sind angegeben, aber kein Meldungstext</translation>
    </message>
    <message>
        <source>there is a text but no recipient</source>
        <translation>ein Meldungstext ist angegeben, aber kein Empfänger</translation>
    </message>
    <message>
        <source>there are neither text nor recipients, nor does a combination or switch point use the limit value</source>
        <translation>es gibt weder Meldungstext noch Empfänger, und weder eine Verknüpfung noch ein Schaltpunkt nutzt den Grenzwert</translation>
    </message>
    <message>
        <source>there are repetitions but no interval</source>
        <translation>Wiederholungen sind angegeben, aber kein Abstand</translation>
    </message>
    <message>
        <source>is neither 0 nor 1: a digital output has no other values</source>
        <translation>ist weder 0 noch 1: andere Werte hat ein Digitalausgang nicht</translation>
    </message>
    <message>
        <source>is a year or more: the value becomes 1</source>
        <translation>ist ein Jahr oder mehr: der Wert wird zu 1</translation>
    </message>
    <message>
        <source>is less than a minute</source>
        <translation>ist weniger als eine Minute</translation>
    </message>
    <message>
        <source>the start is past: it never switches</source>
        <translation>der Start ist vorbei: es wird nie geschaltet</translation>
    </message>
    <message>
        <source>there are no holidays to come</source>
        <translation>es kommt kein Feiertag mehr</translation>
    </message>
    <message>
        <source>limit value %1 is not in use</source>
        <translation>Grenzwert %1 wird nicht verwendet</translation>
    </message>
    <message>
        <source>switch point %1 does the same</source>
        <translation>Schaltpunkt %1 tut dasselbe</translation>
    </message>
    <message>
        <source>is not what switch point %1 sets at the same time</source>
        <translation>ist nicht der Wert, den Schaltpunkt %1 zur selben Zeit setzt</translation>
    </message>
    <message>
        <source>is no address that a module can have</source>
        <translation>ist keine Adresse, die ein Modul haben kann</translation>
    </message>
    <message>
        <source>is no mask: ones, then zeros</source>
        <translation>ist keine Maske: erst Einsen, dann Nullen</translation>
    </message>
    <message>
        <source>the last three MAC bytes are 0, as in every new configuration (edited in expert mode)</source>
        <translation>die letzten drei Bytes der MAC-Adresse sind 0 wie in jeder neuen Konfiguration (im Expertenmodus änderbar)</translation>
    </message>
    <message>
        <source>is in the list twice</source>
        <translation>steht zweimal in der Liste</translation>
    </message>
    <message>
        <source>the command has &quot;%1&quot;, which the module does not know</source>
        <translation>der Befehl enthält „%1“, das das Modul nicht kennt</translation>
    </message>
    <message>
        <source>the command has &quot;%1&quot;, which orders a service</source>
        <translation>der Befehl enthält „%1“, was einen Dienst auslöst</translation>
    </message>
    <message>
        <source>is no hysteresis: a channel of two states takes 0</source>
        <translation>ist keine Hysterese: ein Kanal mit zwei Zuständen braucht 0</translation>
    </message>
    <message>
        <source>has a tab at place %1, which no SMS carries</source>
        <translation>enthält an Stelle %1 einen Tabulator, den keine SMS überträgt</translation>
    </message>
    <message>
        <source>is no whole number from %1</source>
        <translation>ist keine ganze Zahl ab %1</translation>
    </message>
    <message>
        <source>is below %1</source>
        <translation>ist kleiner als %1</translation>
    </message>
    <message>
        <source>is above %1</source>
        <translation>ist größer als %1</translation>
    </message>
    <message>
        <source>is too short for a phone number with a country code</source>
        <translation>ist zu kurz für eine Rufnummer mit Landesvorwahl</translation>
    </message>
    <message>
        <source>is too long: a phone number has %1 digits at most</source>
        <translation>ist zu lang: eine Rufnummer hat höchstens %1 Ziffern</translation>
    </message>
    <message>
        <source>consists only of blanks</source>
        <translation>besteht nur aus Leerzeichen</translation>
    </message>
    <message>
        <source>%1 has the same MAC address (%2): two modules of one network must not (edited in expert mode)</source>
        <translation>%1 hat dieselbe MAC-Adresse (%2): zwei Module eines Netzes dürfen das nicht (bearbeitet im Expertenmodus)</translation>
    </message>
    <message>
        <source>has a line break; it is to stand on one line</source>
        <translation>hat einen Zeilenumbruch; der Text muss in einer Zeile stehen</translation>
    </message>
    <message>
        <source>is empty: what the module reports does not tell its station</source>
        <translation>ist leer: was das Modul meldet, sagt nicht, von welcher Station es kommt</translation>
    </message>
    <message>
        <source>is empty: the module is sent no cycle</source>
        <translation>ist leer: dem Modul wird kein Zyklus gesendet</translation>
    </message>
    <message>
        <source>is too long: the command of step %1 would have %2 characters of %3 at most</source>
        <translation>ist zu lang: Der Befehl von Schritt %1 hätte %2 Zeichen von höchstens %3</translation>
    </message>
    <message>
        <source>, this field has room for %1</source>
        <translation>, in diesem Feld ist Platz für %1</translation>
    </message>
</context>
<context>
    <name>Record</name>
    <message>
        <source>does not exist</source>
        <translation>existiert nicht</translation>
    </message>
    <message>
        <source>has tables of another version</source>
        <translation>hat Tabellen einer anderen Version</translation>
    </message>
    <message>
        <source>is a database of another program</source>
        <translation>ist eine Datenbank eines anderen Programms</translation>
    </message>
    <message>
        <source>was written by a newer version of the program (tables %1; this version knows them up to %2)</source>
        <translation>wurde von einer neueren Version des Programms geschrieben (Tabellen %1; diese Version kennt sie bis %2)</translation>
    </message>
    <message>
        <source>is there already</source>
        <translation>ist schon vorhanden</translation>
    </message>
    <message>
        <source>is not known to be on the disk</source>
        <translation>ist nicht sicher auf dem Datenträger</translation>
    </message>
    <message>
        <source>could not be put there</source>
        <translation>konnte dort nicht abgelegt werden</translation>
    </message>
    <message>
        <source>is damaged</source>
        <translation>ist beschädigt</translation>
    </message>
    <message>
        <source>the new record could not be put there</source>
        <translation>die neue Aufzeichnung konnte dort nicht abgelegt werden</translation>
    </message>
    <message>
        <source>nothing of it could be read</source>
        <translation>nichts davon konnte gelesen werden</translation>
    </message>
    <message>
        <source>some rows of &quot;%1&quot;, of which %2 could be read</source>
        <translation>einige Zeilen von „%1“, von denen %2 gelesen werden konnten</translation>
    </message>
    <message>
        <source>is gone; only its last changes are there: %1</source>
        <translation>ist nicht mehr da; nur ihre letzten Änderungen liegen noch vor: %1</translation>
    </message>
    <message>
        <source>is in use by another program</source>
        <translation>wird von einem anderen Programm benutzt</translation>
    </message>
    <message>
        <source>of a record that is gone, its last changes were there</source>
        <translation>von einer Aufzeichnung, die nicht mehr da ist, lagen die letzten Änderungen vor</translation>
    </message>
    <message>
        <source>was removed, or replaced by another file</source>
        <translation>wurde entfernt oder durch eine andere Datei ersetzt</translation>
    </message>
    <message>
        <source>rows left out before the record could be opened: %1</source>
        <translation>Zeilen, die ausgelassen wurden, bevor die Aufzeichnung geöffnet werden konnte: %1</translation>
    </message>
    <message>
        <source>a password does not belong into an address; the password file of PostgreSQL (~/.pgpass) is the place for it</source>
        <translation>ein Kennwort gehört nicht in eine Adresse; sein Platz ist die Kennwortdatei von PostgreSQL (~/.pgpass)</translation>
    </message>
    <message>
        <source>&quot;%1&quot; cannot stand there</source>
        <translation>„%1“ kann dort nicht stehen</translation>
    </message>
    <message>
        <source>is no address of a database server; a record in a file is made when it is needed</source>
        <translation>ist keine Adresse eines Datenbankservers; eine Aufzeichnung in einer Datei entsteht, wenn sie gebraucht wird</translation>
    </message>
    <message>
        <source>is backed up by the means of the database server (pg_dump, pg_basebackup)</source>
        <translation>wird mit den Mitteln des Datenbankservers gesichert (pg_dump, pg_basebackup)</translation>
    </message>
    <message>
        <source>has no tables yet; &quot;ktrcli record init&quot; makes them</source>
        <translation>hat noch keine Tabellen; „ktrcli record init“ legt sie an</translation>
    </message>
    <message>
        <source>has tables of an older version; &quot;ktrcli record init&quot; brings them forward</source>
        <translation>hat Tabellen einer älteren Version; „ktrcli record init“ bringt sie auf den neuen Stand</translation>
    </message>
    <message>
        <source>may not be read by this user of the database</source>
        <translation>darf von diesem Benutzer der Datenbank nicht gelesen werden</translation>
    </message>
    <message>
        <source>has no tables; &quot;ktrcli record init&quot; makes them</source>
        <translation>hat keine Tabellen; „ktrcli record init“ legt sie an</translation>
    </message>
    <message>
        <source>its folder cannot be made</source>
        <translation>der Ordner dafür kann nicht angelegt werden</translation>
    </message>
    <message>
        <source>has no tables for transmissions yet; &quot;ktrcli record init&quot; makes them</source>
        <translation>hat noch keine Tabellen für Übertragungen; „ktrcli record init“ legt sie an</translation>
    </message>
    <message>
        <source>&quot;%1&quot; does not begin with postgresql://</source>
        <translation>„%1“ beginnt nicht mit postgresql://</translation>
    </message>
    <message>
        <source>is not waited for any longer</source>
        <translation>darauf wird nicht länger gewartet</translation>
    </message>
    <message>
        <source>the server does not answer</source>
        <translation>der Server antwortet nicht</translation>
    </message>
    <message>
        <source>%1 can be written again</source>
        <translation>%1 kann wieder geschrieben werden</translation>
    </message>
    <message>
        <source>%1: rows that the server will not have are kept aside there: %2, the last one because of: %3</source>
        <translation>%1: Zeilen, die der Server nicht annimmt, sind dort aufgehoben: %2, die letzte wegen: %3</translation>
    </message>
</context>
<context>
    <name>RecordTable</name>
    <message>
        <source>Time</source>
        <translation>Zeit</translation>
    </message>
    <message>
        <source>Station</source>
        <translation>Station</translation>
    </message>
    <message>
        <source>Kind</source>
        <translation>Art</translation>
    </message>
    <message>
        <source>Operator</source>
        <translation>Bediener</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>Came</source>
        <translation>Gekommen</translation>
    </message>
    <message>
        <source>Priority</source>
        <translation>Priorität</translation>
    </message>
    <message>
        <source>Last</source>
        <translation>Zuletzt</translation>
    </message>
    <message>
        <source>Count</source>
        <translation>Anzahl</translation>
    </message>
    <message>
        <source>Acknowledged</source>
        <translation>Quittiert</translation>
    </message>
    <message>
        <source>By</source>
        <translation>Von</translation>
    </message>
    <message>
        <source>Over</source>
        <translation>Vorbei</translation>
    </message>
    <message>
        <source>Over by</source>
        <translation>Vorbei durch</translation>
    </message>
    <message>
        <source>Comment</source>
        <translation>Kommentar</translation>
    </message>
    <message>
        <source>Recipients</source>
        <translation>Empfänger</translation>
    </message>
    <message>
        <source>%1 (removed)</source>
        <translation>%1 (entfernt)</translation>
    </message>
    <message>
        <source>Notification</source>
        <translation>Meldung</translation>
    </message>
    <message>
        <source>Input values</source>
        <translation>Eingangswerte</translation>
    </message>
    <message>
        <source>History</source>
        <translation>Historie</translation>
    </message>
    <message>
        <source>Other message</source>
        <translation>Andere Nachricht</translation>
    </message>
    <message>
        <source>Alive</source>
        <translation>Erreichbar</translation>
    </message>
    <message>
        <source>Silent</source>
        <translation>Schweigt</translation>
    </message>
    <message>
        <source>Reception</source>
        <translation>Empfang</translation>
    </message>
    <message>
        <source>PUK</source>
        <translation>PUK</translation>
    </message>
    <message>
        <source>Too much arrives</source>
        <translation>Zu viel kommt an</translation>
    </message>
    <message>
        <source>Station added</source>
        <translation>Station hinzugefügt</translation>
    </message>
    <message>
        <source>Station removed</source>
        <translation>Station entfernt</translation>
    </message>
    <message>
        <source>Station renamed</source>
        <translation>Station umbenannt</translation>
    </message>
    <message>
        <source>Station changed</source>
        <translation>Station geändert</translation>
    </message>
    <message>
        <source>Entry removed</source>
        <translation>Eintrag entfernt</translation>
    </message>
    <message>
        <source>Shelved</source>
        <translation>Zurückgestellt</translation>
    </message>
    <message>
        <source>Not shelved any more</source>
        <translation>Nicht mehr zurückgestellt</translation>
    </message>
    <message>
        <source>Alarm over</source>
        <translation>Alarm vorbei</translation>
    </message>
    <message>
        <source>Sent</source>
        <translation>Gesendet</translation>
    </message>
    <message>
        <source>Program began</source>
        <translation>Programm begonnen</translation>
    </message>
    <message>
        <source>Program ended</source>
        <translation>Programm beendet</translation>
    </message>
    <message>
        <source>List edited</source>
        <translation>Liste bearbeitet</translation>
    </message>
    <message>
        <source>Trouble</source>
        <translation>Störung</translation>
    </message>
    <message>
        <source>Note</source>
        <translation>Notiz</translation>
    </message>
</context>
<context>
    <name>Report</name>
    <message>
        <source>%1 s</source>
        <translation>%1 s</translation>
    </message>
    <message>
        <source>%1 min</source>
        <translation>%1 min</translation>
    </message>
    <message>
        <source>%1 h</source>
        <translation>%1 h</translation>
    </message>
    <message>
        <source>%1 days</source>
        <translation>%1 Tage</translation>
    </message>
    <message>
        <source>Shift report</source>
        <translation>Schichtbericht</translation>
    </message>
    <message>
        <source>Alarms that came</source>
        <translation>Gekommene Alarme</translation>
    </message>
    <message>
        <source>Alarms that stand now</source>
        <translation>Alarme, die jetzt anstehen</translation>
    </message>
    <message>
        <source>What was done</source>
        <translation>Was getan wurde</translation>
    </message>
    <message>
        <source>Stations that are silent now</source>
        <translation>Stationen, die jetzt schweigen</translation>
    </message>
    <message>
        <source>Figures of the alarms</source>
        <translation>Kennzahlen der Alarme</translation>
    </message>
    <message>
        <source>Alarms that came: %1; for each operator %2 in ten minutes</source>
        <translation>Gekommene Alarme: %1; für jeden Bediener %2 in zehn Minuten</translation>
    </message>
    <message>
        <source>What one operator can see to: one alarm in ten minutes over a long time, ten in the first ten minutes of an upset</source>
        <translation>Was ein Bediener bewältigt: auf Dauer einen Alarm in zehn Minuten, zehn in den ersten zehn Minuten einer Störung</translation>
    </message>
    <message>
        <source>%1 of %2 (%3 %)</source>
        <translation>%1 von %2 (%3 %)</translation>
    </message>
    <message>
        <source>Ten minutes with more than one alarm for each operator: %1</source>
        <translation>Zehn Minuten mit mehr als einem Alarm für jeden Bediener: %1</translation>
    </message>
    <message>
        <source>Ten minutes with more than ten alarms for each operator: %1</source>
        <translation>Zehn Minuten mit mehr als zehn Alarmen für jeden Bediener: %1</translation>
    </message>
    <message>
        <source>Most in ten minutes: %1, from %2</source>
        <translation>Die meisten in zehn Minuten: %1, ab %2</translation>
    </message>
    <message>
        <source>Acknowledged: %1, not acknowledged: %2</source>
        <translation>Quittiert: %1, nicht quittiert: %2</translation>
    </message>
    <message>
        <source>Time until the acknowledgement: half within %1, 90 % within %2, longest %3</source>
        <translation>Zeit bis zur Quittierung: die Hälfte in %1, 90 % in %2, am längsten %3</translation>
    </message>
    <message>
        <source>Stood for longer than 24 hours: %1</source>
        <translation>Länger als 24 Stunden angestanden: %1</translation>
    </message>
    <message>
        <source>The ten most frequent alarms</source>
        <translation>Die zehn häufigsten Alarme</translation>
    </message>
    <message>
        <source>Came</source>
        <translation>Gekommen</translation>
    </message>
    <message>
        <source>Reported</source>
        <translation>Gemeldet</translation>
    </message>
    <message>
        <source>Station</source>
        <translation>Station</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>Easily overlooked</source>
        <translation>Leicht übersehen</translation>
    </message>
    <message>
        <source>The sound of alarms is off</source>
        <translation>Der Ton der Alarme ist aus</translation>
    </message>
    <message>
        <source>Offline, not heard for 24 hours</source>
        <translation>Offline, seit 24 Stunden nicht gehört</translation>
    </message>
    <message>
        <source>Online and silent</source>
        <translation>Online und schweigend</translation>
    </message>
    <message>
        <source>Alarms that have stood for longer than 24 hours</source>
        <translation>Alarme, die länger als 24 Stunden anstehen</translation>
    </message>
    <message>
        <source>Shelved alarms</source>
        <translation>Zurückgestellte Alarme</translation>
    </message>
    <message>
        <source>Until</source>
        <translation>Bis</translation>
    </message>
    <message>
        <source>By</source>
        <translation>Von</translation>
    </message>
    <message>
        <source>Reason</source>
        <translation>Grund</translation>
    </message>
    <message>
        <source>all alarms</source>
        <translation>alle Alarme</translation>
    </message>
    <message>
        <source>From %1 to %2</source>
        <translation>Von %1 bis %2</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Zeit</translation>
    </message>
    <message>
        <source>Operator</source>
        <translation>Bediener</translation>
    </message>
    <message>
        <source>What</source>
        <translation>Was</translation>
    </message>
    <message>
        <source>There is more than this report takes: of each list it has the last %1 only</source>
        <translation>Es gibt mehr, als dieser Bericht fasst: von jeder Liste hat er nur die letzten %1</translation>
    </message>
    <message>
        <source>Count</source>
        <translation>Anzahl</translation>
    </message>
    <message>
        <source>Acknowledged</source>
        <translation>Quittiert</translation>
    </message>
    <message>
        <source>Over</source>
        <translation>Vorbei</translation>
    </message>
    <message>
        <source>Comment</source>
        <translation>Kommentar</translation>
    </message>
    <message>
        <source>Last heard</source>
        <translation>Zuletzt gehört</translation>
    </message>
    <message>
        <source>For how long</source>
        <translation>Seit</translation>
    </message>
    <message>
        <source>never</source>
        <translation>nie</translation>
    </message>
    <message>
        <source>Alarms per hour</source>
        <translation>Alarme je Stunde</translation>
    </message>
    <message>
        <source>From</source>
        <translation>Von</translation>
    </message>
    <message>
        <source>Alarms</source>
        <translation>Alarme</translation>
    </message>
    <message>
        <source>Most in ten minutes</source>
        <translation>Die meisten in zehn Minuten</translation>
    </message>
    <message>
        <source>%1 more are in the CSV table</source>
        <translation>%1 weitere stehen in der CSV-Tabelle</translation>
    </message>
    <message>
        <source>Page %1 of %2</source>
        <translation>Seite %1 von %2</translation>
    </message>
    <message>
        <source>The record begins on %1: the figures are about the time since</source>
        <translation>Die Aufzeichnung beginnt am %1: Die Kennzahlen gelten für die Zeit seitdem</translation>
    </message>
</context>
<context>
    <name>RequestDesk</name>
    <message>
        <source>it was asked for before the stations were watched</source>
        <translation>das wurde verlangt, bevor die Stationen überwacht wurden</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is not known to the program that watches</source>
        <translation>„%1“ kennt das überwachende Programm nicht</translation>
    </message>
    <message>
        <source>alarms that came anew meanwhile: %1</source>
        <translation>inzwischen neu gekommene Alarme: %1</translation>
    </message>
    <message>
        <source>no station can be called that</source>
        <translation>so kann keine Station heißen</translation>
    </message>
    <message>
        <source>%1 has a text to deliver already</source>
        <translation>%1 hat schon einen Text zuzustellen</translation>
    </message>
    <message>
        <source>the program that watches the stations was held up for too long</source>
        <translation>das Programm, das die Stationen überwacht, war zu lange aufgehalten</translation>
    </message>
    <message>
        <source>the station is no longer in the list</source>
        <translation>die Station steht nicht mehr in der Liste</translation>
    </message>
    <message>
        <source>%1 is no administrator of the database</source>
        <translation>%1 ist kein Administrator der Datenbank</translation>
    </message>
    <message>
        <source>no keeper has what it is about, or it did not answer in time</source>
        <translation>kein Wächter hat, worum es geht, oder er hat nicht rechtzeitig geantwortet</translation>
    </message>
    <message>
        <source>it is over by now, or without an end</source>
        <translation>es ist schon vorbei oder hat kein Ende</translation>
    </message>
    <message>
        <source>whether on or off is missing</source>
        <translation>ob an oder aus, fehlt</translation>
    </message>
    <message>
        <source>%1 is no keeper</source>
        <translation>%1 ist kein Wächter</translation>
    </message>
</context>
<context>
    <name>RowSpool</name>
    <message>
        <source>%1: is damaged; it is kept as %2</source>
        <translation>%1: ist beschädigt; aufgehoben als %2</translation>
    </message>
    <message>
        <source>holds as much as it may</source>
        <translation>enthält so viel, wie sie darf</translation>
    </message>
    <message>
        <source>of another version of the program</source>
        <translation>von einer anderen Version des Programms</translation>
    </message>
</context>
<context>
    <name>SearchField</name>
    <message>
        <source>Search</source>
        <translation>Suchen</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>Leeren</translation>
    </message>
</context>
<context>
    <name>Sound</name>
    <message>
        <source>the sound cannot be written into a file</source>
        <translation>der Ton kann nicht in eine Datei geschrieben werden</translation>
    </message>
    <message>
        <source>none of the programs pw-play, paplay and aplay is installed</source>
        <translation>keines der Programme pw-play, paplay und aplay ist installiert</translation>
    </message>
    <message>
        <source>the sound service does not answer</source>
        <translation>der Tondienst antwortet nicht</translation>
    </message>
    <message>
        <source>it failed without a reason</source>
        <translation>es schlug ohne Angabe eines Grundes fehl</translation>
    </message>
    <message>
        <source>the system has no device that plays sounds</source>
        <translation>das System hat kein Gerät, das Töne wiedergibt</translation>
    </message>
    <message>
        <source>the system does not play it</source>
        <translation>das System gibt ihn nicht wieder</translation>
    </message>
</context>
<context>
    <name>SpoolPlace</name>
    <message>
        <source>the folder cannot be made</source>
        <translation>der Ordner kann nicht angelegt werden</translation>
    </message>
    <message>
        <source>too many keepers use it</source>
        <translation>zu viele Wächter benutzen ihn</translation>
    </message>
</context>
<context>
    <name>Station</name>
    <message>
        <source>a line without an end was dropped</source>
        <translation>eine Zeile ohne Ende wurde verworfen</translation>
    </message>
    <message>
        <source>datagrams were dropped: too many wait for their turn</source>
        <translation>Datagramme wurden verworfen: zu viele warten, bis sie an der Reihe sind</translation>
    </message>
</context>
<context>
    <name>StationGroups</name>
    <message>
        <source>Line %1: a group needs a name</source>
        <translation>Zeile %1: eine Gruppe braucht einen Namen</translation>
    </message>
    <message>
        <source>Line %1: it stands in front of the first group</source>
        <translation>Zeile %1: sie steht vor der ersten Gruppe</translation>
    </message>
    <message>
        <source>it is not in UTF-8</source>
        <translation>sie ist nicht in UTF-8</translation>
    </message>
    <message>
        <source>Line %1: behind &quot;=&quot; stand one to four inputs, from 1 to 18, with commas between them</source>
        <translation>Zeile %1: Hinter „=“ stehen ein bis vier Eingänge, von 1 bis 18, mit Kommas dazwischen</translation>
    </message>
</context>
<context>
    <name>StationImport</name>
    <message>
        <source>There is no name</source>
        <translation>Der Name fehlt</translation>
    </message>
    <message>
        <source>A name must not hold a &quot;/&quot;</source>
        <translation>Ein Name darf kein „/“ enthalten</translation>
    </message>
    <message>
        <source>This is no address of a module</source>
        <translation>Das ist keine Adresse eines Moduls</translation>
    </message>
    <message>
        <source>Without an address</source>
        <translation>Ohne Adresse</translation>
    </message>
    <message>
        <source>There is a &quot;%1&quot; already</source>
        <translation>„%1“ gibt es schon</translation>
    </message>
    <message>
        <source>&quot;%1&quot; has this address, too</source>
        <translation>„%1“ hat diese Adresse auch</translation>
    </message>
</context>
<context>
    <name>StationLine</name>
    <message>
        <source>another keeper may have it</source>
        <translation>ein anderer Wächter hat sie vielleicht</translation>
    </message>
</context>
<context>
    <name>StationLinks</name>
    <message>
        <source>Line %1: %2 has a file already</source>
        <translation>Zeile %1: %2 hat schon eine Datei</translation>
    </message>
    <message>
        <source>Line %1, %2, is not understood</source>
        <translation>Zeile %1, %2, wird nicht verstanden</translation>
    </message>
</context>
<context>
    <name>StationMark</name>
    <message>
        <source>offline</source>
        <translation>offline</translation>
    </message>
    <message>
        <source>not heard yet</source>
        <translation>noch nicht gehört</translation>
    </message>
    <message>
        <source>alive</source>
        <translation>aktiv</translation>
    </message>
    <message>
        <source>silent</source>
        <translation>stumm</translation>
    </message>
</context>
<context>
    <name>StationNumbers</name>
    <message>
        <source>in alarm %L1</source>
        <translation>in Alarm %L1</translation>
    </message>
    <message>
        <source>silent %L1</source>
        <translation>stumm %L1</translation>
    </message>
</context>
<context>
    <name>StationRemoval</name>
    <message>
        <source>The removal was undone. Alarms that it had closed and that are open again: %1</source>
        <translation>Das Entfernen wurde rückgängig gemacht. Alarme, die es geschlossen hatte und die wieder offen sind: %1</translation>
    </message>
</context>
<context>
    <name>StationTransmission</name>
    <message>
        <source>all was sent: the memory does not prove what it held</source>
        <translation>alles wurde gesendet: Das Gedächtnis beweist nicht, was es enthielt</translation>
    </message>
    <message>
        <source>all was sent: the module told another version</source>
        <translation>alles wurde gesendet: Das Modul meldete eine andere Version</translation>
    </message>
</context>
<context>
    <name>SwitchTypes</name>
    <message>
        <source>any weekday</source>
        <translation>jeder Wochentag</translation>
    </message>
    <message>
        <source>working days</source>
        <translation>Werktage</translation>
    </message>
    <message>
        <source>above the limit</source>
        <translation>über dem Grenzwert</translation>
    </message>
    <message>
        <source>below the limit</source>
        <translation>unter dem Grenzwert</translation>
    </message>
</context>
<context>
    <name>TableFile</name>
    <message>
        <source>there is no row below a line of titles</source>
        <translation>unter einer Titelzeile steht keine Zeile</translation>
    </message>
    <message>
        <source>line %1 has a quotation mark without its counterpart</source>
        <translation>In Zeile %1 steht ein Anführungszeichen ohne sein Gegenstück</translation>
    </message>
</context>
<context>
    <name>TimeMap</name>
    <message>
        <source>high</source>
        <translation>hoch</translation>
    </message>
    <message>
        <source>medium</source>
        <translation>mittel</translation>
    </message>
    <message>
        <source>low</source>
        <translation>niedrig</translation>
    </message>
    <message>
        <source>less than a minute</source>
        <translation>weniger als eine Minute</translation>
    </message>
    <message>
        <source>%1 min</source>
        <translation>%1 min</translation>
    </message>
    <message>
        <source>%1 h %2 min</source>
        <translation>%1 h %2 min</translation>
    </message>
    <message>
        <source>no alarm</source>
        <translation>kein Alarm</translation>
    </message>
    <message>
        <source>1 alarm, priority %1</source>
        <translation>1 Alarm, Priorität %1</translation>
    </message>
    <message>
        <source>%1 alarms, the most urgent priority: %2</source>
        <translation>%1 Alarme, dringlichste Priorität: %2</translation>
    </message>
    <message>
        <source>not heard for %1</source>
        <translation>nicht gehört: %1</translation>
    </message>
    <message>
        <source>stations not heard: %1 of %2, together for %3</source>
        <translation>nicht gehörte Stationen: %1 von %2, zusammen %3</translation>
    </message>
    <message>
        <source>no silence</source>
        <translation>kein Schweigen</translation>
    </message>
    <message>
        <source>not known for %1: nobody watched</source>
        <translation>unbekannt für %1: niemand überwachte</translation>
    </message>
</context>
<context>
    <name>Transmission</name>
    <message>
        <source>The configuration was sent; whether all of it arrived is not known</source>
        <translation>Die Konfiguration wurde gesendet; ob alles angekommen ist, ist nicht bekannt</translation>
    </message>
    <message>
        <source>The configuration was transmitted in part</source>
        <translation>Die Konfiguration wurde nur teilweise übertragen</translation>
    </message>
    <message>
        <source>The transmission was broken off before step %1</source>
        <translation>Die Übertragung wurde vor Schritt %1 abgebrochen</translation>
    </message>
    <message>
        <source>The configuration was transmitted</source>
        <translation>Die Konfiguration wurde übertragen</translation>
    </message>
    <message>
        <source>%1 commands sent, %2 refused, %3 answered</source>
        <translation>%1 Befehle gesendet, %2 abgelehnt, %3 beantwortet</translation>
    </message>
    <message>
        <source>Too long:</source>
        <translation>Zu lang:</translation>
    </message>
    <message>
        <source>Answered as failed:</source>
        <translation>Als fehlgeschlagen beantwortet:</translation>
    </message>
    <message>
        <source>Not confirmed by the module:</source>
        <translation>Vom Modul nicht bestätigt:</translation>
    </message>
    <message>
        <source>Whether the network lost a command is only known when the module answers</source>
        <translation>Ob das Netz einen Befehl verloren hat, ist nur bekannt, wenn das Modul antwortet</translation>
    </message>
    <message>
        <source>The module does not tell its version</source>
        <translation>Das Modul nennt seine Version nicht</translation>
    </message>
    <message>
        <source>The module does not hold what the changes were made from; it tells the version %1</source>
        <translation>Das Modul enthält nicht, wovon die Änderungen ausgehen; es nennt die Version %1</translation>
    </message>
    <message>
        <source>The entry was transmitted; the module&apos;s version no longer fits</source>
        <translation>Der Eintrag wurde übertragen; die Version des Moduls passt nicht mehr dazu</translation>
    </message>
</context>
<context>
    <name>Transmissions</name>
    <message>
        <source>Transmission</source>
        <translation>Übertragung</translation>
    </message>
    <message>
        <source>Step</source>
        <translation>Schritt</translation>
    </message>
    <message>
        <source>Command</source>
        <translation>Befehl</translation>
    </message>
    <message>
        <source>Outcome</source>
        <translation>Ergebnis</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Zeit</translation>
    </message>
    <message>
        <source>Commands</source>
        <translation>Befehle</translation>
    </message>
    <message>
        <source>Transmission to</source>
        <translation>Übertragung an</translation>
    </message>
    <message>
        <source>The module holds version %1, which was transmitted to station %2</source>
        <translation>Das Modul hat die Version %1, die an die Station %2 übertragen wurde</translation>
    </message>
    <message>
        <source>The module holds a newer version, %1, than this one, %2</source>
        <translation>Das Modul hat eine neuere Version, %1, als diese, %2</translation>
    </message>
    <message>
        <source>At %1 is station %2, as transmitted on %3</source>
        <translation>Unter %1 ist die Station %2, wie am %3 übertragen</translation>
    </message>
    <message>
        <source>A newer version, %1, was transmitted to this station on %2</source>
        <translation>Eine neuere Version, %1, wurde am %2 an diese Station übertragen</translation>
    </message>
    <message>
        <source>not known</source>
        <translation>nicht bekannt</translation>
    </message>
    <message>
        <source>last transmitted: %1 on %2</source>
        <translation>zuletzt übertragen: %1 am %2</translation>
    </message>
    <message>
        <source>last over this line: %1</source>
        <translation>zuletzt über diese Verbindung: %1</translation>
    </message>
    <message>
        <source>%1 (module: %2)</source>
        <translation>%1 (Modul: %2)</translation>
    </message>
    <message>
        <source>Station</source>
        <translation>Station</translation>
    </message>
    <message>
        <source>Version</source>
        <translation>Version</translation>
    </message>
    <message>
        <source>Line</source>
        <translation>Verbindung</translation>
    </message>
    <message>
        <source>Problems</source>
        <translation>Probleme</translation>
    </message>
    <message>
        <source>none</source>
        <translation>keine</translation>
    </message>
    <message>
        <source>Overwrites</source>
        <translation>Überschreibt</translation>
    </message>
    <message>
        <source>broken off before step %1, or still running</source>
        <translation>vor Schritt %1 abgebrochen, oder noch im Gang</translation>
    </message>
    <message>
        <source>broken off, or still running</source>
        <translation>abgebrochen, oder noch im Gang</translation>
    </message>
    <message>
        <source>broken off before step %1</source>
        <translation>vor Schritt %1 abgebrochen</translation>
    </message>
    <message>
        <source>broken off</source>
        <translation>abgebrochen</translation>
    </message>
    <message>
        <source>sent, not confirmed</source>
        <translation>gesendet, nicht bestätigt</translation>
    </message>
    <message>
        <source>in part</source>
        <translation>teilweise</translation>
    </message>
    <message>
        <source>whole</source>
        <translation>vollständig</translation>
    </message>
    <message>
        <source>confirmed</source>
        <translation>bestätigt</translation>
    </message>
    <message>
        <source>refused</source>
        <translation>abgelehnt</translation>
    </message>
    <message>
        <source>failed</source>
        <translation>fehlgeschlagen</translation>
    </message>
    <message>
        <source>unconfirmed</source>
        <translation>unbestätigt</translation>
    </message>
    <message>
        <source>sent</source>
        <translation>gesendet</translation>
    </message>
    <message>
        <source>Version sent</source>
        <translation>Gesendete Version</translation>
    </message>
    <message>
        <source>Version before</source>
        <translation>Version zuvor</translation>
    </message>
    <message>
        <source>Begun</source>
        <translation>Begonnen</translation>
    </message>
    <message>
        <source>Ended</source>
        <translation>Beendet</translation>
    </message>
    <message>
        <source>User</source>
        <translation>Benutzer</translation>
    </message>
    <message>
        <source>Operator</source>
        <translation>Bediener</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Datei</translation>
    </message>
    <message>
        <source>Program</source>
        <translation>Programm</translation>
    </message>
    <message>
        <source>Number</source>
        <translation>Nummer</translation>
    </message>
    <message>
        <source>A single command was sent, and no configuration</source>
        <translation>Es wurde ein einzelner Befehl gesendet und keine Konfiguration</translation>
    </message>
    <message>
        <source>single command</source>
        <translation>einzelner Befehl</translation>
    </message>
</context>
<context>
    <name>TrialRun</name>
    <message>
        <source>No address of this machine is free for them. (%1)</source>
        <translation>Keine Adresse dieses Rechners ist für sie frei. (%1)</translation>
    </message>
</context>
<context>
    <name>ValueAge</name>
    <message>
        <source>now</source>
        <translation>jetzt</translation>
    </message>
    <message>
        <source>%1 min</source>
        <translation>%1 min</translation>
    </message>
    <message>
        <source>%1 h</source>
        <translation>%1 h</translation>
    </message>
    <message>
        <source>since %1</source>
        <translation>seit %1</translation>
    </message>
    <message>
        <source>Limit value %1: %2</source>
        <translation>Grenzwert %1: %2</translation>
    </message>
</context>
<context>
    <name>WatchAlarms</name>
    <message>
        <source>The program stood still, or the clock was set</source>
        <translation>Das Programm stand still, oder die Uhr wurde gestellt</translation>
    </message>
    <message>
        <source>The station is silent</source>
        <translation>Die Station schweigt</translation>
    </message>
    <message>
        <source>More arrives from the station than can be taken</source>
        <translation>Von der Station kommt mehr an, als verarbeitet werden kann</translation>
    </message>
    <message>
        <source>The module&apos;s SIM asks for its PUK</source>
        <translation>Die SIM-Karte des Moduls verlangt ihre PUK</translation>
    </message>
    <message>
        <source>it is not watched any more</source>
        <translation>sie wird nicht mehr überwacht</translation>
    </message>
    <message>
        <source>%1: nobody watched from %2 to %3</source>
        <translation>%1: von %2 bis %3 hat niemand überwacht</translation>
    </message>
</context>
<context>
    <name>ktr::Acknowledging</name>
    <message>
        <source>Not acknowledged: %1</source>
        <translation>Nicht quittiert: %1</translation>
    </message>
    <message>
        <source>Acknowledge %L1 alarms?</source>
        <translation>%L1 Alarme quittieren?</translation>
    </message>
    <message>
        <source>Acknowledged without a name. The menu Alarms, Operator, takes one.</source>
        <translation>Ohne Namen quittiert. Im Menü Alarme, Bediener, kann einer angegeben werden.</translation>
    </message>
</context>
<context>
    <name>ktr::AddStationsDialog</name>
    <message>
        <source>Add stations</source>
        <translation>Stationen hinzufügen</translation>
    </message>
    <message>
        <source>Go online at once</source>
        <translation>Sofort online schalten</translation>
    </message>
    <message>
        <source>Connects every new station that has an address</source>
        <translation>Verbindet jede neue Station, die eine Adresse hat</translation>
    </message>
    <message>
        <source>Pumping station North;10.0.0.17
Water tower;tower.example.org:49111</source>
        <translation>Pumpwerk Nord;10.0.0.17
Wasserturm;turm.example.org:49111</translation>
    </message>
    <message>
        <source>One station per line: name;address</source>
        <translation>Eine Station pro Zeile: Name;Adresse</translation>
    </message>
    <message>
        <source>Read from a file</source>
        <translation>Aus Datei lesen</translation>
    </message>
    <message>
        <source>A CSV or text file with at most %1 lines</source>
        <translation>Eine CSV- oder Textdatei mit höchstens %1 Zeilen</translation>
    </message>
    <message>
        <source>Lists of stations</source>
        <translation>Stationslisten</translation>
    </message>
    <message>
        <source>All files</source>
        <translation>Alle Dateien</translation>
    </message>
    <message>
        <source>Stations to be added: %1; lines left out: %2</source>
        <translation>Hinzuzufügende Stationen: %1; ausgelassene Zeilen: %2</translation>
    </message>
    <message>
        <source>Only the first %1 stations are read</source>
        <translation>Nur die ersten %1 Stationen werden gelesen</translation>
    </message>
    <message>
        <source>Stations added: %1; lines left out: %2</source>
        <translation>Hinzugefügte Stationen: %1; ausgelassene Zeilen: %2</translation>
    </message>
    <message>
        <source>The address is four numbers with dots between them or a host name; &quot;:port&quot; may follow</source>
        <translation>Die Adresse besteht aus vier Zahlen mit Punkten dazwischen oder ist ein Rechnername; „:Port“ kann folgen</translation>
    </message>
    <message>
        <source>Preview of the lines</source>
        <translation>Vorschau der Zeilen</translation>
    </message>
</context>
<context>
    <name>ktr::AlarmBar</name>
    <message>
        <source>Show all</source>
        <translation>Alle anzeigen</translation>
    </message>
    <message>
        <source>Latest</source>
        <translation>Neuester</translation>
    </message>
    <message>
        <source>Lists the alarms of all stations that are not acknowledged</source>
        <translation>Zeigt die nicht quittierten Alarme aller Stationen</translation>
    </message>
    <message>
        <source>Shows the latest alarm at its station</source>
        <translation>Zeigt den neuesten Alarm bei seiner Station</translation>
    </message>
    <message>
        <source>Acknowledges all alarms of all stations</source>
        <translation>Quittiert alle Alarme aller Stationen</translation>
    </message>
    <message>
        <source>Mute</source>
        <translation>Ton aus</translation>
    </message>
    <message>
        <source>1 alarm</source>
        <translation>1 Alarm</translation>
    </message>
    <message>
        <source>%1 alarms</source>
        <translation>%1 Alarme</translation>
    </message>
    <message>
        <source>First: %1</source>
        <translation>Erster: %1</translation>
    </message>
    <message>
        <source>Latest: %1</source>
        <translation>Neuester: %1</translation>
    </message>
    <message>
        <source>When this is not ticked, new alarms sound, and every 60 seconds as long as one is not acknowledged. It ends by itself; for how long, the menu Alarms offers. This bar and messages of the desktop stay.</source>
        <translation>Ohne Häkchen ertönen neue Alarme, und alle 60 Sekunden, solange einer nicht quittiert ist. Die Stille endet von selbst; wie lange sie dauert, bietet das Menü Alarme an. Diese Leiste und Meldungen des Desktops bleiben.</translation>
    </message>
    <message>
        <source>Acknowledge</source>
        <translation>Quittieren</translation>
    </message>
</context>
<context>
    <name>ktr::AlarmBook</name>
    <message>
        <source>the station was removed</source>
        <translation>die Station wurde entfernt</translation>
    </message>
</context>
<context>
    <name>ktr::AlarmCells</name>
    <message>
        <source>Priority</source>
        <translation>Priorität</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>Station</source>
        <translation>Station</translation>
    </message>
    <message>
        <source>State</source>
        <translation>Status</translation>
    </message>
    <message>
        <source>First</source>
        <translation>Zuerst</translation>
    </message>
    <message>
        <source>Last</source>
        <translation>Zuletzt</translation>
    </message>
    <message>
        <source>Count</source>
        <translation>Anzahl</translation>
    </message>
    <message>
        <source>Recipients</source>
        <translation>Empfänger</translation>
    </message>
    <message>
        <source>Comment</source>
        <translation>Kommentar</translation>
    </message>
    <message>
        <source>high</source>
        <translation>hoch</translation>
    </message>
    <message>
        <source>medium</source>
        <translation>mittel</translation>
    </message>
    <message>
        <source>low</source>
        <translation>niedrig</translation>
    </message>
    <message>
        <source>shelved until %1</source>
        <translation>zurückgestellt bis %1</translation>
    </message>
    <message>
        <source>acknowledged %1</source>
        <translation>quittiert %1</translation>
    </message>
    <message>
        <source>over %1</source>
        <translation>vorbei %1</translation>
    </message>
    <message>
        <source>acknowledged or shelved</source>
        <translation>quittiert oder zurückgestellt</translation>
    </message>
    <message>
        <source>%1: %L2</source>
        <translation>%1: %L2</translation>
    </message>
    <message>
        <source>all alarms: in maintenance</source>
        <translation>alle Alarme: in Wartung</translation>
    </message>
    <message>
        <source>%1 chatters</source>
        <translation>%1 flattert</translation>
    </message>
    <message>
        <source>%L1 stations</source>
        <translation>%L1 Stationen</translation>
    </message>
    <message>
        <source>It came more than %1 times within %2 minutes</source>
        <translation>Er kam mehr als %1-mal in %2 Minuten</translation>
    </message>
    <message>
        <source>nobody: station removed</source>
        <translation>niemand: Station entfernt</translation>
    </message>
    <message>
        <source>station removed %1</source>
        <translation>Station entfernt %1</translation>
    </message>
</context>
<context>
    <name>ktr::AlarmLimitsDialog</name>
    <message>
        <source> minutes</source>
        <translation> Minuten</translation>
    </message>
    <message>
        <source>for ever</source>
        <translation>für immer</translation>
    </message>
    <message>
        <source>Chattering and silence</source>
        <translation>Flattern und Schweigen</translation>
    </message>
    <message>
        <source>Chattering alarms</source>
        <translation>Flatternde Alarme</translation>
    </message>
    <message>
        <source>It came more often than</source>
        <translation>Der Alarm kam öfter als</translation>
    </message>
    <message>
        <source>within</source>
        <translation>innerhalb von</translation>
    </message>
    <message>
        <source>The page &quot;Alarms&quot; marks them. They wait to be acknowledged like all others.</source>
        <translation>Die Seite „Alarme“ kennzeichnet sie. Sie sind zu quittieren wie alle anderen.</translation>
    </message>
    <message>
        <source>Silent stations</source>
        <translation>Schweigende Stationen</translation>
    </message>
    <message>
        <source>A station may be silent for</source>
        <translation>Eine Station darf schweigen</translation>
    </message>
    <message>
        <source>Longer silence of a station that is online is an alarm. 0: it never is.</source>
        <translation>Schweigt eine Station länger, die online ist, dann ist das ein Alarm. 0: nie.</translation>
    </message>
</context>
<context>
    <name>ktr::AlarmListPage</name>
    <message>
        <source>Only not acknowledged</source>
        <translation>Nur nicht quittierte</translation>
    </message>
    <message>
        <source>Shelved ones, too</source>
        <translation>Auch zurückgestellte</translation>
    </message>
    <message>
        <source>Lists what is shelved, and stations in maintenance</source>
        <translation>Zeigt auch, was zurückgestellt ist, und Stationen in Wartung</translation>
    </message>
    <message>
        <source>Filter</source>
        <translation>Filter</translation>
    </message>
    <message>
        <source>Searched for in text, station, recipients and comment</source>
        <translation>Gesucht wird in Text, Station, Empfängern und Kommentar</translation>
    </message>
    <message>
        <source>Alarms</source>
        <translation>Alarme</translation>
    </message>
    <message>
        <source>%1 (all shown)</source>
        <translation>%1 (alle gezeigten)</translation>
    </message>
    <message>
        <source>Comment...</source>
        <translation>Kommentar...</translation>
    </message>
    <message>
        <source>Shelve...</source>
        <translation>Zurückstellen...</translation>
    </message>
    <message>
        <source>Take back</source>
        <translation>Zurückholen</translation>
    </message>
    <message>
        <source>Show in the tree</source>
        <translation>Im Baum zeigen</translation>
    </message>
    <message>
        <source>Acknowledges the selected alarms (Space in the list)</source>
        <translation>Quittiert die ausgewählten Alarme (Leertaste in der Liste)</translation>
    </message>
    <message>
        <source>Acknowledges all alarms that are listed</source>
        <translation>Quittiert alle angezeigten Alarme</translation>
    </message>
    <message>
        <source>Writes a comment to the selected alarms</source>
        <translation>Schreibt einen Kommentar zu den ausgewählten Alarmen</translation>
    </message>
    <message>
        <source>Puts the selected alarms aside for a while, with a reason</source>
        <translation>Stellt die ausgewählten Alarme für eine Weile zurück, mit einem Grund</translation>
    </message>
    <message>
        <source>Takes the selected alarms back that are shelved</source>
        <translation>Holt die ausgewählten Alarme zurück, die zurückgestellt sind</translation>
    </message>
    <message>
        <source>Listed: %1, %2: %3</source>
        <translation>Angezeigt: %1, %2: %3</translation>
    </message>
    <message>
        <source>No alarms</source>
        <translation>Keine Alarme</translation>
    </message>
    <message>
        <source>Nothing fits the filter</source>
        <translation>Nichts passt zum Filter</translation>
    </message>
    <message>
        <source>Comment on: %1</source>
        <translation>Kommentar zu: %1</translation>
    </message>
    <message>
        <source>Comment on %L1 alarms</source>
        <translation>Kommentar zu %L1 Alarmen</translation>
    </message>
    <message>
        <source>The alarm is about no station</source>
        <translation>Der Alarm betrifft keine Station</translation>
    </message>
    <message>
        <source>The station of the alarm is no longer in the list</source>
        <translation>Die Station des Alarms steht nicht mehr in der Liste</translation>
    </message>
    <message>
        <source>Acknowledge</source>
        <translation>Quittieren</translation>
    </message>
</context>
<context>
    <name>ktr::AlarmRulesDialog</name>
    <message>
        <source>Alarm rules</source>
        <translation>Alarmregeln</translation>
    </message>
    <message>
        <source>What a station could send, for example: Pump 1 fail</source>
        <translation>Was eine Station senden könnte, zum Beispiel: Pumpe 1 fail</translation>
    </message>
    <message>
        <source>Try a text</source>
        <translation>Text probieren</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>Hinzufügen</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Entfernen</translation>
    </message>
    <message>
        <source>Up</source>
        <translation>Nach oben</translation>
    </message>
    <message>
        <source>Down</source>
        <translation>Nach unten</translation>
    </message>
    <message>
        <source>Without a rule nothing that a station sends is an alarm</source>
        <translation>Ohne Regel ist nichts, was eine Station sendet, ein Alarm</translation>
    </message>
    <message>
        <source>No rule fits: it is no alarm.</source>
        <translation>Keine Regel passt: kein Alarm.</translation>
    </message>
    <message>
        <source>Rule %1 fits: it is no alarm.</source>
        <translation>Regel %1 passt: kein Alarm.</translation>
    </message>
    <message>
        <source>Rule %1 fits: an alarm, priority %2, with sound.</source>
        <translation>Regel %1 passt: ein Alarm, Priorität %2, mit Ton.</translation>
    </message>
    <message>
        <source>Rule %1 fits: an alarm, priority %2, without sound.</source>
        <translation>Regel %1 passt: ein Alarm, Priorität %2, ohne Ton.</translation>
    </message>
    <message>
        <source>Nothing the station sends ends it.</source>
        <translation>Nichts, was die Station sendet, beendet ihn.</translation>
    </message>
    <message>
        <source>It is over when the station sends &quot;%1&quot;.</source>
        <translation>Er ist vorbei, wenn die Station „%1“ sendet.</translation>
    </message>
    <message>
        <source>In the tree it is red all the same, as every text with &quot;fail&quot;.</source>
        <translation>Im Baum ist er trotzdem rot wie jeder Text mit „fail“.</translation>
    </message>
    <message>
        <source>What a station sends is looked for in the rules from the top; the first one that fits says what it is. What fits none is no alarm. Changes hold for what comes from then on.</source>
        <translation>Was eine Station sendet, wird von oben an mit den Regeln verglichen; die erste, die passt, sagt, was es ist. Was zu keiner passt, ist kein Alarm. Änderungen gelten für das, was danach kommt.</translation>
    </message>
</context>
<context>
    <name>ktr::AlarmRulesModel</name>
    <message>
        <source>Rule %1 has no text to look for</source>
        <translation>Regel %1 hat keinen Text, nach dem gesucht wird</translation>
    </message>
    <message>
        <source>Rule %1: the text that ends the alarm is the one that begins it</source>
        <translation>Regel %1: der Text, der den Alarm beendet, ist der, mit dem er beginnt</translation>
    </message>
    <message>
        <source>Rule %1 never holds: an earlier one fits all of its texts</source>
        <translation>Regel %1 gilt nie: eine frühere passt auf alle ihre Texte</translation>
    </message>
    <message>
        <source>Text contains</source>
        <translation>Text enthält</translation>
    </message>
    <message>
        <source>Upper/lower case</source>
        <translation>Groß/klein</translation>
    </message>
    <message>
        <source>Alarm</source>
        <translation>Alarm</translation>
    </message>
    <message>
        <source>Priority</source>
        <translation>Priorität</translation>
    </message>
    <message>
        <source>Sound</source>
        <translation>Ton</translation>
    </message>
    <message>
        <source>What stands somewhere in the text</source>
        <translation>Was irgendwo im Text steht</translation>
    </message>
    <message>
        <source>Whether &quot;FAIL&quot; is another text than &quot;fail&quot;</source>
        <translation>Ob „FAIL“ ein anderer Text ist als „fail“</translation>
    </message>
    <message>
        <source>Not ticked: texts that fit are no alarm, whatever later rules say</source>
        <translation>Ohne Häkchen: Texte, die passen, sind kein Alarm, was spätere Regeln auch sagen</translation>
    </message>
    <message>
        <source>How urgent it is: one low tone, two tones, or three high ones</source>
        <translation>Wie dringend er ist: ein tiefer Ton, zwei Töne oder drei hohe</translation>
    </message>
    <message>
        <source>Whether it is heard when it comes, and again each minute</source>
        <translation>Ob er zu hören ist, wenn er kommt, und dann jede Minute</translation>
    </message>
    <message>
        <source>What stands in place of the text when the alarm is over: with &quot;fail&quot; and &quot;ok&quot;, &quot;Pump 1 fail&quot; is over when the station sends &quot;Pump 1 ok&quot;. Empty: nothing ends it.</source>
        <translation>Was an der Stelle des Textes steht, wenn der Alarm vorbei ist: Mit „fail“ und „ok“ ist „Pumpe 1 fail“ vorbei, wenn die Station „Pumpe 1 ok“ sendet. Leer: Nichts beendet ihn.</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>yes</source>
        <translation>ja</translation>
    </message>
    <message>
        <source>no</source>
        <translation>nein</translation>
    </message>
    <message>
        <source>In its place when over</source>
        <translation>Stattdessen, wenn vorbei</translation>
    </message>
</context>
<context>
    <name>ktr::BesideBanner</name>
    <message>
        <source>Groups of stations: %1</source>
        <translation>Gruppen von Stationen: %1</translation>
    </message>
    <message>
        <source>Configurations of stations: %1</source>
        <translation>Konfigurationen von Stationen: %1</translation>
    </message>
    <message>
        <source>What can be read of it is used; the file stays as it is.</source>
        <translation>Was davon lesbar ist, wird verwendet; die Datei bleibt, wie sie ist.</translation>
    </message>
</context>
<context>
    <name>ktr::CalibrationPage</name>
    <message>
        <source>Sends %1</source>
        <translation>Sendet %1</translation>
    </message>
    <message>
        <source>Confirmation of the module</source>
        <translation>Bestätigung des Moduls</translation>
    </message>
    <message>
        <source>Earlier confirmations</source>
        <translation>Frühere Bestätigungen</translation>
    </message>
    <message>
        <source>A double click takes all marks away</source>
        <translation>Ein Doppelklick nimmt alle Marken weg</translation>
    </message>
    <message>
        <source>confirmed by the module</source>
        <translation>vom Modul bestätigt</translation>
    </message>
    <message>
        <source>Not carried out: %1</source>
        <translation>Nicht ausgeführt: %1</translation>
    </message>
</context>
<context>
    <name>ktr::ChangesOffer</name>
    <message>
        <source>1 command</source>
        <translation>1 Befehl</translation>
    </message>
    <message>
        <source>%1 commands</source>
        <translation>%1 Befehle</translation>
    </message>
    <message>
        <source>Changes (%1)</source>
        <translation>Änderungen (%1)</translation>
    </message>
    <message>
        <source>Changes</source>
        <translation>Änderungen</translation>
    </message>
    <message>
        <source>Transmit changes (%1)</source>
        <translation>Änderungen übertragen (%1)</translation>
    </message>
    <message>
        <source>Transmit changes</source>
        <translation>Änderungen übertragen</translation>
    </message>
    <message>
        <source>Transmits only what the module does not hold yet, as its version proves</source>
        <translation>Überträgt nur, was das Modul noch nicht enthält, wie seine Version beweist</translation>
    </message>
    <message>
        <source>The module holds this configuration</source>
        <translation>Das Modul enthält diese Konfiguration</translation>
    </message>
    <message>
        <source>Possible when the module has told its version and it is known what was transmitted with it</source>
        <translation>Möglich, wenn das Modul seine Version genannt hat und bekannt ist, was mit ihr übertragen wurde</translation>
    </message>
    <message>
        <source>This entry</source>
        <translation>Dieser Eintrag</translation>
    </message>
    <message>
        <source>Only %1</source>
        <translation>Nur %1</translation>
    </message>
    <message>
        <source>The module keeps the version it had, which then no longer fits</source>
        <translation>Das Modul behält seine bisherige Version, die dann nicht mehr passt</translation>
    </message>
    <message>
        <source>Choose a limit value, a switch point or a field of an input first</source>
        <translation>Wählen Sie zuerst einen Grenzwert, einen Schaltpunkt oder ein Feld eines Eingangs</translation>
    </message>
    <message>
        <source>Only %1 is transmitted: the module&apos;s version no longer fits what it holds</source>
        <translation>Nur %1 wird übertragen: Die Version des Moduls passt dann nicht mehr zu seinem Inhalt</translation>
    </message>
</context>
<context>
    <name>ktr::ChannelInput</name>
    <message>
        <source>none</source>
        <translation>keiner</translation>
    </message>
    <message>
        <source>A signal of %1</source>
        <translation>Ein Signal von %1</translation>
    </message>
</context>
<context>
    <name>ktr::ChannelInputs</name>
    <message>
        <source>is not played</source>
        <translation>wird nicht gespielt</translation>
    </message>
    <message>
        <source>has no value yet</source>
        <translation>noch kein Wert</translation>
    </message>
    <message>
        <source>not passed</source>
        <translation>nicht verletzt</translation>
    </message>
    <message>
        <source>delay until %1</source>
        <translation>Verzögerung bis %1</translation>
    </message>
    <message>
        <source>stands, repetition at %1</source>
        <translation>steht an, Wiederholung um %1</translation>
    </message>
    <message>
        <source>stands</source>
        <translation>steht an</translation>
    </message>
    <message>
        <source>No limit value watches a channel</source>
        <translation>Kein Grenzwert überwacht einen Kanal</translation>
    </message>
</context>
<context>
    <name>ktr::CompareWindow</name>
    <message>
        <source>Compare</source>
        <translation>Vergleichen</translation>
    </message>
    <message>
        <source>Filter</source>
        <translation>Filter</translation>
    </message>
    <message>
        <source>Shows the lines that have this text</source>
        <translation>Zeigt die Zeilen mit diesem Text</translation>
    </message>
    <message>
        <source>When each was edited, which tells nothing of what it does</source>
        <translation>Wann jede geändert wurde; was sie bewirkt, sagt das nicht</translation>
    </message>
    <message>
        <source>Only what both changed, each in another way</source>
        <translation>Nur was beide geändert haben, jede Seite anders</translation>
    </message>
    <message>
        <source>What a transmission sends differently, by its steps</source>
        <translation>Was eine Übertragung anders sendet, nach ihren Schritten</translation>
    </message>
    <message>
        <source>Differences</source>
        <translation>Unterschiede</translation>
    </message>
    <message>
        <source>Compares with the present file as it is on the disk</source>
        <translation>Vergleicht mit der vorliegenden Datei, wie sie gespeichert ist</translation>
    </message>
    <message>
        <source>Compares with another file</source>
        <translation>Vergleicht mit einer anderen Datei</translation>
    </message>
    <message>
        <source>The file that both were made from: then it is known who changed what</source>
        <translation>Die Datei, aus der beide entstanden sind: dann ist bekannt, wer was geändert hat</translation>
    </message>
    <message>
        <source>Goes to the field (Enter)</source>
        <translation>Geht zum Feld (Eingabetaste)</translation>
    </message>
    <message>
        <source>Takes the values of the chosen lines over from the other side; can be undone</source>
        <translation>Übernimmt die Werte der gewählten Zeilen von der anderen Seite; kann rückgängig gemacht werden</translation>
    </message>
    <message>
        <source>Decides the chosen conflicts for the present values</source>
        <translation>Entscheidet die gewählten Konflikte für die jetzigen Werte</translation>
    </message>
    <message>
        <source>Takes over all that only the other side changed; can be undone</source>
        <translation>Übernimmt alles, was nur die andere Seite geändert hat; kann rückgängig gemacht werden</translation>
    </message>
    <message>
        <source>Saved state</source>
        <translation>Gespeicherter Stand</translation>
    </message>
    <message>
        <source>File...</source>
        <translation>Datei...</translation>
    </message>
    <message>
        <source>Common ancestor...</source>
        <translation>Gemeinsamer Ursprung...</translation>
    </message>
    <message>
        <source>None</source>
        <translation>Keiner</translation>
    </message>
    <message>
        <source>Conflicts only</source>
        <translation>Nur Konflikte</translation>
    </message>
    <message>
        <source>Stamps</source>
        <translation>Zeitstempel</translation>
    </message>
    <message>
        <source>As commands</source>
        <translation>Als Befehle</translation>
    </message>
    <message>
        <source>Go to field</source>
        <translation>Zum Feld</translation>
    </message>
    <message>
        <source>Take over</source>
        <translation>Übernehmen</translation>
    </message>
    <message>
        <source>Keep present</source>
        <translation>Jetziges behalten</translation>
    </message>
    <message>
        <source>Take all of theirs</source>
        <translation>Alles andere übernehmen</translation>
    </message>
    <message>
        <source>Export...</source>
        <translation>Exportieren...</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>There is no present file</source>
        <translation>Es gibt keine vorliegende Datei</translation>
    </message>
    <message>
        <source>%1 cannot be opened</source>
        <translation>%1 lässt sich nicht öffnen</translation>
    </message>
    <message>
        <source>%1 is no configuration</source>
        <translation>%1 ist keine Konfiguration</translation>
    </message>
    <message>
        <source>Step</source>
        <translation>Schritt</translation>
    </message>
    <message>
        <source>Field</source>
        <translation>Feld</translation>
    </message>
    <message>
        <source>Present</source>
        <translation>Jetzt</translation>
    </message>
    <message>
        <source>Other side</source>
        <translation>Andere Seite</translation>
    </message>
    <message>
        <source>Ancestor</source>
        <translation>Ursprung</translation>
    </message>
    <message>
        <source>Changed by</source>
        <translation>Geändert von</translation>
    </message>
    <message>
        <source>present</source>
        <translation>jetzige</translation>
    </message>
    <message>
        <source>other side</source>
        <translation>andere Seite</translation>
    </message>
    <message>
        <source>both, alike</source>
        <translation>beide gleich</translation>
    </message>
    <message>
        <source>both</source>
        <translation>beide</translation>
    </message>
    <message>
        <source>decided</source>
        <translation>entschieden</translation>
    </message>
    <message>
        <source>conflict</source>
        <translation>Konflikt</translation>
    </message>
    <message>
        <source>none chosen</source>
        <translation>nichts gewählt</translation>
    </message>
    <message>
        <source>Common ancestor</source>
        <translation>Gemeinsamer Ursprung</translation>
    </message>
    <message>
        <source>Fields that differ: %1. Commands that differ: %2</source>
        <translation>Verschiedene Felder: %1. Verschiedene Befehle: %2</translation>
    </message>
    <message>
        <source>Conflicts: %1</source>
        <translation>Konflikte: %1</translation>
    </message>
    <message>
        <source>Choose a file to compare with</source>
        <translation>Wählen Sie eine Datei zum Vergleichen</translation>
    </message>
    <message>
        <source>No line fits the filter</source>
        <translation>Keine Zeile passt zum Filter</translation>
    </message>
    <message>
        <source>No difference</source>
        <translation>Kein Unterschied</translation>
    </message>
    <message>
        <source>No difference but the stamps</source>
        <translation>Kein Unterschied außer den Zeitstempeln</translation>
    </message>
    <message>
        <source>%1 was not taken over: the list of holidays is full</source>
        <translation>%1 wurde nicht übernommen: Die Liste der Feiertage ist voll</translation>
    </message>
    <message>
        <source>Page</source>
        <translation>Seite</translation>
    </message>
    <message>
        <source>Entry</source>
        <translation>Eintrag</translation>
    </message>
    <message>
        <source>Saved as %1</source>
        <translation>Gespeichert als %1</translation>
    </message>
    <message>
        <source>Taken over: %1 fields</source>
        <translation>Übernommen: %1 Felder</translation>
    </message>
    <message>
        <source>Taken over: %1, %2 in place of %3</source>
        <translation>Übernommen: %1, %2 statt %3</translation>
    </message>
</context>
<context>
    <name>ktr::ConfigurationCard</name>
    <message>
        <source>Configurations</source>
        <translation>Konfigurationen</translation>
    </message>
    <message>
        <source>All files</source>
        <translation>Alle Dateien</translation>
    </message>
    <message>
        <source>%1: the configuration file is %2</source>
        <translation>%1: die Konfigurationsdatei ist %2</translation>
    </message>
    <message>
        <source>No configuration file is linked</source>
        <translation>Keine Konfigurationsdatei ist verknüpft</translation>
    </message>
    <message>
        <source>%1: %2 is not its configuration file any more</source>
        <translation>%1: %2 ist nicht mehr die Konfigurationsdatei</translation>
    </message>
    <message>
        <source>No file has its identifier. Names, units and limit values of its inputs are not known.</source>
        <translation>Keine Datei hat ihre Kennung. Namen, Einheiten und Grenzwerte der Eingänge sind nicht bekannt.</translation>
    </message>
    <message>
        <source>None, as chosen. Names, units and limit values of its inputs are not known.</source>
        <translation>Keine, wie gewählt. Namen, Einheiten und Grenzwerte der Eingänge sind nicht bekannt.</translation>
    </message>
    <message>
        <source>chosen by hand</source>
        <translation>von Hand gewählt</translation>
    </message>
    <message>
        <source>transmitted last to its address</source>
        <translation>zuletzt an ihre Adresse übertragen</translation>
    </message>
    <message>
        <source>one of %1 with its identifier, the newest names</source>
        <translation>eine von %1 mit ihrer Kennung, mit den neuesten Namen</translation>
    </message>
    <message>
        <source>found by its identifier</source>
        <translation>an der Kennung gefunden</translation>
    </message>
    <message>
        <source>Configuration file</source>
        <translation>Konfigurationsdatei</translation>
    </message>
    <message>
        <source>Link...</source>
        <translation>Verknüpfen...</translation>
    </message>
    <message>
        <source>Chooses the configuration file of the station; the Configuration Mode opens it</source>
        <translation>Wählt die Konfigurationsdatei der Station; der Konfigurationsmodus öffnet sie</translation>
    </message>
    <message>
        <source>Unlink</source>
        <translation>Lösen</translation>
    </message>
    <message>
        <source>The file is not the station&apos;s any more; it stays as it is</source>
        <translation>Die Datei gehört nicht mehr zur Station; sie bleibt, wie sie ist</translation>
    </message>
</context>
<context>
    <name>ktr::ConnectionPage</name>
    <message>
        <source>Serial port</source>
        <translation>Serielle Schnittstelle</translation>
    </message>
    <message>
        <source>Search all ports</source>
        <translation>Alle Ports durchsuchen</translation>
    </message>
    <message>
        <source>A port of the list, or one typed; 9600 baud, 8 data bits</source>
        <translation>Ein Port aus der Liste oder ein eingegebener; 9600 Baud, 8 Datenbits</translation>
    </message>
    <message>
        <source>Port</source>
        <translation>Port</translation>
    </message>
    <message>
        <source>Connect</source>
        <translation>Verbinden</translation>
    </message>
    <message>
        <source>Where the module is reached: four numbers from 0 to 255, or a name</source>
        <translation>Adresse des Moduls: vier Zahlen von 0 bis 255 oder ein Name</translation>
    </message>
    <message>
        <source>The module keeps its GSM connection beside this one</source>
        <translation>Das Modul behält daneben seine GSM-Verbindung</translation>
    </message>
    <message>
        <source>The module uses this connection alone</source>
        <translation>Das Modul nutzt nur diese Verbindung</translation>
    </message>
    <message>
        <source>Events of the connection</source>
        <translation>Ereignisse der Verbindung</translation>
    </message>
    <message>
        <source>connected</source>
        <translation>verbunden</translation>
    </message>
    <message>
        <source>not connected</source>
        <translation>nicht verbunden</translation>
    </message>
</context>
<context>
    <name>ktr::CurveCsv</name>
    <message>
        <source>Time</source>
        <translation>Zeit</translation>
    </message>
    <message>
        <source>Zone</source>
        <translation>Zone</translation>
    </message>
    <message>
        <source>minimum</source>
        <translation>Minimum</translation>
    </message>
    <message>
        <source>mean</source>
        <translation>Mittel</translation>
    </message>
    <message>
        <source>maximum</source>
        <translation>Maximum</translation>
    </message>
</context>
<context>
    <name>ktr::CurvesLegend</name>
    <message>
        <source>Curve</source>
        <translation>Kurve</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Wert</translation>
    </message>
    <message>
        <source>Unit</source>
        <translation>Einheit</translation>
    </message>
    <message>
        <source>Minimum</source>
        <translation>Minimum</translation>
    </message>
    <message>
        <source>Maximum</source>
        <translation>Maximum</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Zeit</translation>
    </message>
    <message>
        <source>Rise per hour</source>
        <translation>Anstieg je Stunde</translation>
    </message>
    <message>
        <source>Rise per day</source>
        <translation>Anstieg je Tag</translation>
    </message>
    <message>
        <source>%1 min</source>
        <translation>%1 min</translation>
    </message>
    <message>
        <source>%1 h</source>
        <translation>%1 h</translation>
    </message>
    <message>
        <source>%1 d</source>
        <translation>%1 d</translation>
    </message>
    <message>
        <source>%1 at the cursor</source>
        <translation>%1 am Cursor</translation>
    </message>
    <message>
        <source>over %1</source>
        <translation>über %1</translation>
    </message>
    <message>
        <source>By how much the values rise in a day: the slope of the straight line that is nearest to those from %1 to %2. It is of the time around the cursor, or of all that is shown; of the same time for all curves.</source>
        <translation>Um wie viel die Werte an einem Tag steigen: die Steigung der Geraden, die denen von %1 bis %2 am nächsten liegt. Es gilt die Zeit um den Cursor oder die ganze gezeigte, für alle Kurven dieselbe.</translation>
    </message>
    <message>
        <source>By how much the values rise in an hour: the slope of the straight line that is nearest to those from %1 to %2. It is of the time around the cursor, or of all that is shown; of the same time for all curves.</source>
        <translation>Um wie viel die Werte in einer Stunde steigen: die Steigung der Geraden, die denen von %1 bis %2 am nächsten liegt. Es gilt die Zeit um den Cursor oder die ganze gezeigte, für alle Kurven dieselbe.</translation>
    </message>
</context>
<context>
    <name>ktr::CurvesPage</name>
    <message>
        <source>As measured</source>
        <translation>Wie gemessen</translation>
    </message>
    <message>
        <source>Change since the begin</source>
        <translation>Änderung seit dem Beginn</translation>
    </message>
    <message>
        <source>In % of their range</source>
        <translation>In % ihres Bereichs</translation>
    </message>
    <message>
        <source>How values are shown</source>
        <translation>Wie die Werte gezeigt werden</translation>
    </message>
    <message>
        <source>How values are shown: what rises alike runs alike</source>
        <translation>Wie die Werte gezeigt werden: Was gleich steigt, verläuft gleich</translation>
    </message>
    <message>
        <source>Inputs...</source>
        <translation>Eingänge...</translation>
    </message>
    <message>
        <source>Shows the list of stations and inputs to choose from (Insert)</source>
        <translation>Zeigt die Liste der Stationen und Eingänge zum Auswählen (Einfg)</translation>
    </message>
    <message>
        <source>Picture...</source>
        <translation>Bild...</translation>
    </message>
    <message>
        <source>Saves what is seen as a PNG picture or a PDF page</source>
        <translation>Speichert, was zu sehen ist, als PNG-Bild oder PDF-Seite</translation>
    </message>
    <message>
        <source>CSV...</source>
        <translation>CSV...</translation>
    </message>
    <message>
        <source>Saves the values that are seen as a table for spreadsheets</source>
        <translation>Speichert die Werte, die zu sehen sind, als Tabelle für Tabellenkalkulationen</translation>
    </message>
    <message>
        <source>No curve is chosen. Drag stations or inputs from the tree to here, or choose them in the list that &quot;Inputs...&quot; shows.</source>
        <translation>Keine Kurve ist gewählt. Ziehen Sie Stationen oder Eingänge aus dem Baum hierher, oder wählen Sie sie in der Liste, die „Eingänge...“ zeigt.</translation>
    </message>
    <message>
        <source>Plus and minus or the wheel zoom, the arrow keys or the mouse move, Shift and the mouse choose a time, Page Up and Page Down step, Home shows the time up to now, Ctrl and an arrow key go from value to value.</source>
        <translation>Plus und Minus oder das Rad vergrößern und verkleinern, die Pfeiltasten oder die Maus verschieben, Umschalt und die Maus wählen eine Zeit, Bild auf und Bild ab gehen weiter, Pos1 zeigt die Zeit bis jetzt, Strg und eine Pfeiltaste gehen von Wert zu Wert.</translation>
    </message>
    <message>
        <source>Curves over time</source>
        <translation>Kurven über der Zeit</translation>
    </message>
    <message>
        <source>Curves and their values</source>
        <translation>Kurven und ihre Werte</translation>
    </message>
    <message>
        <source>Remove from the curves</source>
        <translation>Aus den Kurven entfernen</translation>
    </message>
    <message>
        <source>Remove all</source>
        <translation>Alle entfernen</translation>
    </message>
    <message>
        <source>The station has not sent any values yet.</source>
        <translation>Die Station hat noch keine Werte gesendet.</translation>
    </message>
    <message>
        <source>More than %1 curves cannot be told from each other: %2</source>
        <translation>Mehr als %1 Kurven lassen sich nicht unterscheiden: %2</translation>
    </message>
    <message>
        <source>Reading...</source>
        <translation>Wird gelesen...</translation>
    </message>
    <message>
        <source>Nothing was heard of these inputs in this time.</source>
        <translation>Von diesen Eingängen wurde in dieser Zeit nichts gehört.</translation>
    </message>
    <message>
        <source>All values</source>
        <translation>Alle Werte</translation>
    </message>
    <message>
        <source>Quarters of an hour: minimum, mean, maximum</source>
        <translation>Viertelstunden: Minimum, Mittel, Maximum</translation>
    </message>
    <message>
        <source>Hours: minimum, mean, maximum</source>
        <translation>Stunden: Minimum, Mittel, Maximum</translation>
    </message>
    <message>
        <source>Days: minimum, mean, maximum</source>
        <translation>Tage: Minimum, Mittel, Maximum</translation>
    </message>
    <message>
        <source>There are more than %1 units: values are shown in % of their range.</source>
        <translation>Es sind mehr als %1 Einheiten: Die Werte werden in % ihres Bereichs gezeigt.</translation>
    </message>
    <message>
        <source>Of the notifications the newest ones are marked.</source>
        <translation>Von den Meldungen sind die neuesten markiert.</translation>
    </message>
    <message>
        <source>Curves from %1 to %2</source>
        <translation>Kurven von %1 bis %2</translation>
    </message>
    <message>
        <source>curves</source>
        <translation>Kurven</translation>
    </message>
    <message>
        <source>PNG picture</source>
        <translation>PNG-Bild</translation>
    </message>
    <message>
        <source>PDF page</source>
        <translation>PDF-Seite</translation>
    </message>
    <message>
        <source>%1: the picture is too large.</source>
        <translation>%1: Das Bild ist zu groß.</translation>
    </message>
    <message>
        <source>Saved: %1</source>
        <translation>Gespeichert: %1</translation>
    </message>
    <message>
        <source>CSV table</source>
        <translation>CSV-Tabelle</translation>
    </message>
</context>
<context>
    <name>ktr::DatePicker</name>
    <message>
        <source>A holiday of this configuration</source>
        <translation>Ein Feiertag dieser Konfiguration</translation>
    </message>
    <message>
        <source>Choose a date</source>
        <translation>Datum auswählen</translation>
    </message>
    <message>
        <source>Choose date and time</source>
        <translation>Datum und Uhrzeit auswählen</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Uhrzeit</translation>
    </message>
    <message>
        <source>Take over</source>
        <translation>Übernehmen</translation>
    </message>
</context>
<context>
    <name>ktr::DesktopNotifier</name>
    <message>
        <source>New alarm</source>
        <translation>Neuer Alarm</translation>
    </message>
    <message>
        <source>New alarms: %L1</source>
        <translation>Neue Alarme: %L1</translation>
    </message>
    <message>
        <source>First: %1</source>
        <translation>Erster: %1</translation>
    </message>
    <message>
        <source>Latest: %1</source>
        <translation>Neuester: %1</translation>
    </message>
    <message>
        <source>This desktop shows no messages; alarms are shown in the window only.</source>
        <translation>Dieser Desktop zeigt keine Benachrichtigungen; Alarme erscheinen nur im Fenster.</translation>
    </message>
</context>
<context>
    <name>ktr::DiskWatch</name>
    <message>
        <source>%1 was changed by somebody else (%2). Your edits are not in it; when they are saved, what stands there now is kept beside it.</source>
        <translation>%1 wurde von jemand anderem geändert (%2). Ihre Änderungen stehen nicht darin; wenn Sie sie speichern, wird das, was jetzt dort steht, daneben aufgehoben.</translation>
    </message>
    <message>
        <source>%1 was changed by somebody else (%2).</source>
        <translation>%1 wurde von jemand anderem geändert (%2).</translation>
    </message>
    <message>
        <source>Load it</source>
        <translation>Laden</translation>
    </message>
    <message>
        <source>Compare</source>
        <translation>Vergleichen</translation>
    </message>
    <message>
        <source>Go on</source>
        <translation>Fortfahren</translation>
    </message>
</context>
<context>
    <name>ktr::DropStrip</name>
    <message>
        <source>Drop here to see the curves</source>
        <translation>Hier ablegen, um die Kurven zu sehen</translation>
    </message>
</context>
<context>
    <name>ktr::EntryCommands</name>
    <message>
        <source>What is on the clipboard cannot be read</source>
        <translation>Der Inhalt der Zwischenablage kann nicht gelesen werden</translation>
    </message>
    <message>
        <source>On the clipboard are switch points, not limit values</source>
        <translation>In der Zwischenablage sind Schaltpunkte, keine Grenzwerte</translation>
    </message>
    <message>
        <source>On the clipboard are limit values, not switch points</source>
        <translation>In der Zwischenablage sind Grenzwerte, keine Schaltpunkte</translation>
    </message>
    <message>
        <source>Copied: %1</source>
        <translation>Kopiert: %1</translation>
    </message>
    <message>
        <source>Cut: %1</source>
        <translation>Ausgeschnitten: %1</translation>
    </message>
    <message>
        <source>. It is still named by %1, which follow it to where it is pasted here</source>
        <translation>. Noch beziehen sich darauf: %1; sie folgen dorthin, wo es hier eingefügt wird</translation>
    </message>
    <message>
        <source>Pasted: %1</source>
        <translation>Eingefügt: %1</translation>
    </message>
    <message>
        <source>. What stood there was named by %1</source>
        <translation>. Auf das, was dort stand, bezogen sich: %1</translation>
    </message>
    <message>
        <source>%1 duplicated: %2</source>
        <translation>%1 verdoppelt: %2</translation>
    </message>
    <message>
        <source>Cleared: %1</source>
        <translation>Geleert: %1</translation>
    </message>
    <message>
        <source>. It is still named by %1</source>
        <translation>. Noch beziehen sich darauf: %1</translation>
    </message>
    <message>
        <source>Move %1 to which number?</source>
        <translation>Auf welche Nummer soll %1?</translation>
    </message>
    <message>
        <source>The places are numbered 1 to %1</source>
        <translation>Die Plätze haben die Nummern 1 bis %1</translation>
    </message>
    <message>
        <source>Only entries that follow each other can be moved together</source>
        <translation>Nur aufeinander folgende Einträge können zusammen verschoben werden</translation>
    </message>
    <message>
        <source>%1 moved to %2</source>
        <translation>%1 verschoben nach %2</translation>
    </message>
    <message>
        <source>Pasted: %1, in place of %2</source>
        <translation>Eingefügt: %1, statt %2</translation>
    </message>
    <message>
        <source>%1 and %2 more</source>
        <translation>%1 und %2 weitere</translation>
    </message>
</context>
<context>
    <name>ktr::EthernetPage</name>
    <message>
        <source>The maker&apos;s part of the address; it is the same in every module</source>
        <translation>Herstellerteil der Adresse; in jedem Modul derselbe</translation>
    </message>
</context>
<context>
    <name>ktr::ExclusiveCard</name>
    <message>
        <source>This is no time of the day, 00:00 to 23:59, so nothing is switched</source>
        <translation>Das ist keine Uhrzeit von 00:00 bis 23:59; es wird nicht geschaltet</translation>
    </message>
    <message>
        <source>The days on which exclusive mode is switched</source>
        <translation>Die Tage, an denen der Exklusivmodus geschaltet wird</translation>
    </message>
    <message>
        <source>The time of the day, HH:MM</source>
        <translation>Die Uhrzeit, HH:MM</translation>
    </message>
    <message>
        <source>While it is exclusive the module uses this connection alone: it neither sends nor receives by GSM. What is ticked by hand stays until the next switch.</source>
        <translation>Im Exklusivmodus nutzt das Modul nur diese Verbindung: es sendet und empfängt nicht über GSM. Was von Hand angehakt wird, gilt bis zum nächsten Schaltpunkt.</translation>
    </message>
</context>
<context>
    <name>ktr::ExportDialog</name>
    <message>
        <source>Entries</source>
        <translation>Einträge</translation>
    </message>
    <message>
        <source>Only not acknowledged</source>
        <translation>Nur nicht quittierte</translation>
    </message>
    <message>
        <source>Leaves out notifications that are no alarm or were acknowledged</source>
        <translation>Lässt Meldungen aus, die kein Alarm oder bereits quittiert sind</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Zeitraum</translation>
    </message>
    <message>
        <source>Entries whose time is not known are exported with &quot;Everything&quot; only</source>
        <translation>Einträge, deren Zeit unbekannt ist, werden nur mit „Alles“ exportiert</translation>
    </message>
    <message>
        <source>Everything</source>
        <translation>Alles</translation>
    </message>
    <message>
        <source>Today</source>
        <translation>Heute</translation>
    </message>
    <message>
        <source>The last 7 days</source>
        <translation>Die letzten 7 Tage</translation>
    </message>
    <message>
        <source>This month</source>
        <translation>Dieser Monat</translation>
    </message>
    <message>
        <source>From</source>
        <translation>Von</translation>
    </message>
    <message>
        <source>To</source>
        <translation>Bis</translation>
    </message>
    <message>
        <source>Day, month, year, hour and minute; this minute is included</source>
        <translation>Tag, Monat, Jahr, Stunde und Minute; diese Minute gehört dazu</translation>
    </message>
    <message>
        <source>Stations</source>
        <translation>Stationen</translation>
    </message>
    <message>
        <source>All (%1)</source>
        <translation>Alle (%1)</translation>
    </message>
    <message>
        <source>The chosen one</source>
        <translation>Die gewählte</translation>
    </message>
    <message>
        <source>Only %1</source>
        <translation>Nur %1</translation>
    </message>
    <message>
        <source>These:</source>
        <translation>Diese:</translation>
    </message>
    <message>
        <source>The first time is later than the second</source>
        <translation>Der Beginn liegt nach dem Ende</translation>
    </message>
    <message>
        <source>Entries: %1</source>
        <translation>Einträge: %1</translation>
    </message>
    <message>
        <source>Left out, time not known: %1</source>
        <translation>Ausgelassen, Zeit unbekannt: %1</translation>
    </message>
    <message>
        <source>history %1.csv</source>
        <translation>Historie %1.csv</translation>
    </message>
    <message>
        <source>notifications %1.csv</source>
        <translation>Meldungen %1.csv</translation>
    </message>
    <message>
        <source>CSV table</source>
        <translation>CSV-Tabelle</translation>
    </message>
    <message>
        <source>Exported: %1</source>
        <translation>Exportiert: %1</translation>
    </message>
    <message>
        <source>%1: entries exported: %2</source>
        <translation>%1: exportierte Einträge: %2</translation>
    </message>
    <message>
        <source>left out, time not known: %1</source>
        <translation>ausgelassen, Zeit unbekannt: %1</translation>
    </message>
    <message>
        <source>The export failed: %1</source>
        <translation>Der Export ist fehlgeschlagen: %1</translation>
    </message>
    <message>
        <source>The export was cancelled; there is no new file</source>
        <translation>Der Export wurde abgebrochen; es gibt keine neue Datei</translation>
    </message>
    <message>
        <source>From ... to ...</source>
        <translation>Von ... bis ...</translation>
    </message>
    <message>
        <source>The %L1 that are chosen</source>
        <translation>Die %L1 gewählten</translation>
    </message>
</context>
<context>
    <name>ktr::FileCommands</name>
    <message>
        <source>New configuration</source>
        <translation>Neue Konfiguration</translation>
    </message>
    <message>
        <source>Saved: %1</source>
        <translation>Gespeichert: %1</translation>
    </message>
    <message>
        <source>Loaded: %1. What was not saved before comes back with %2.</source>
        <translation>Geladen: %1. Der vorherige, nicht gespeicherte Stand kommt mit %2 zurück.</translation>
    </message>
    <message>
        <source>Loaded: %1</source>
        <translation>Geladen: %1</translation>
    </message>
    <message>
        <source>Loaded: %1. Not everything in it could be used: %2</source>
        <translation>Geladen: %1. Nicht alles darin war verwendbar: %2</translation>
    </message>
    <message>
        <source>The list of recent files could not be kept</source>
        <translation>Die Liste der zuletzt verwendeten Dateien konnte nicht gespeichert werden</translation>
    </message>
    <message>
        <source>New configuration. Saving it replaces %1</source>
        <translation>Neue Konfiguration. Speichern ersetzt %1</translation>
    </message>
    <message>
        <source>Saved: %1. What stood there before is kept in %2</source>
        <translation>Gespeichert: %1. Was vorher dort stand, ist in %2 aufgehoben</translation>
    </message>
    <message>
        <source>Not saved: no file was chosen. The next save asks for one</source>
        <translation>Nicht gespeichert: Es wurde keine Datei gewählt. Das nächste Speichern fragt danach</translation>
    </message>
    <message>
        <source>There is no present file</source>
        <translation>Es gibt keine aktuelle Datei</translation>
    </message>
    <message>
        <source>The present file is %1</source>
        <translation>Die aktuelle Datei ist %1</translation>
    </message>
    <message>
        <source>The edits are not saved. They are kept in %1, and the next start offers them.</source>
        <translation>Die Änderungen sind nicht gespeichert. Sie sind in %1 aufgehoben, und der nächste Start bietet sie an.</translation>
    </message>
    <message>
        <source>The edits are not saved, and they could not be kept for the next start: %1</source>
        <translation>Die Änderungen sind nicht gespeichert und konnten auch nicht für den nächsten Start aufgehoben werden: %1</translation>
    </message>
    <message>
        <source>Edits of %1 were not saved when the program ended. They were kept.</source>
        <translation>Änderungen vom %1 waren nicht gespeichert, als das Programm endete. Sie wurden aufgehoben.</translation>
    </message>
    <message>
        <source>Edits of %1 in %2 were not saved when the program ended. They were kept.</source>
        <translation>Änderungen vom %1 in %2 waren nicht gespeichert, als das Programm endete. Sie wurden aufgehoben.</translation>
    </message>
    <message>
        <source>Open them</source>
        <translation>Öffnen</translation>
    </message>
    <message>
        <source>Discard them</source>
        <translation>Verwerfen</translation>
    </message>
    <message>
        <source>Later</source>
        <translation>Später</translation>
    </message>
    <message>
        <source>Opened: edits that are not saved yet</source>
        <translation>Geöffnet: Änderungen, die noch nicht gespeichert sind</translation>
    </message>
    <message>
        <source>Opened: edits that are not saved yet. Saving replaces %1</source>
        <translation>Geöffnet: Änderungen, die noch nicht gespeichert sind. Das Speichern ersetzt %1</translation>
    </message>
    <message>
        <source>Opened: %1. Saving asks for a file.</source>
        <translation>Geöffnet: %1. Beim Speichern wird nach einer Datei gefragt.</translation>
    </message>
    <message>
        <source>A new station like the one before; Ctrl+Z goes back to that. Its identifier, PIN and address are to be filled in, the MAC address is a new one</source>
        <translation>Eine neue Station wie die vorige; Strg+Z führt zu dieser zurück. Kennung, PIN und Adresse sind auszufüllen, die MAC-Adresse ist eine neue</translation>
    </message>
    <message>
        <source>Edits cannot be kept for the next start. Save them from time to time. %1</source>
        <translation>Änderungen können nicht für den nächsten Start aufgehoben werden. Speichern Sie sie ab und zu. %1</translation>
    </message>
    <message>
        <source>Edits are kept for the next start again</source>
        <translation>Änderungen werden wieder für den nächsten Start aufgehoben</translation>
    </message>
    <message>
        <source>The file was not read</source>
        <translation>Die Datei wurde nicht gelesen</translation>
    </message>
    <message>
        <source>Edits are not kept</source>
        <translation>Änderungen werden nicht aufgehoben</translation>
    </message>
    <message>
        <source>That file is not there any more.</source>
        <translation>Diese Datei gibt es nicht mehr.</translation>
    </message>
    <message>
        <source>Since then somebody else has changed that file (%1). Your edits do not have these changes; when they are saved, what stands there now is kept beside it.</source>
        <translation>Seitdem hat jemand anderer diese Datei geändert (%1). Davon steht nichts in Ihren Änderungen; wenn Sie sie speichern, wird das, was jetzt dort steht, daneben aufgehoben.</translation>
    </message>
    <message>
        <source>What is shown stands in no file. New begins a configuration, Undo goes back.</source>
        <translation>Was gezeigt wird, steht in keiner Datei. Neu beginnt eine Konfiguration, Rückgängig führt zurück.</translation>
    </message>
    <message>
        <source>What it has and this program does not know is gone when it is saved: %1</source>
        <translation>Was darin steht und dieses Programm nicht kennt, ist nach dem Speichern fort: %1</translation>
    </message>
</context>
<context>
    <name>ktr::FindPage</name>
    <message>
        <source>Events</source>
        <translation>Ereignisse</translation>
    </message>
    <message>
        <source>What stations said and operators did, each by itself</source>
        <translation>Was Stationen sagten und Bediener taten, jedes für sich</translation>
    </message>
    <message>
        <source>Alarms</source>
        <translation>Alarme</translation>
    </message>
    <message>
        <source>Each occurrence of an alarm, with what became of it</source>
        <translation>Jedes Auftreten eines Alarms und was daraus wurde</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Zeit</translation>
    </message>
    <message>
        <source>Everything</source>
        <translation>Alles</translation>
    </message>
    <message>
        <source>Today</source>
        <translation>Heute</translation>
    </message>
    <message>
        <source>Yesterday</source>
        <translation>Gestern</translation>
    </message>
    <message>
        <source>The last 7 days</source>
        <translation>Die letzten 7 Tage</translation>
    </message>
    <message>
        <source>From ... to ...</source>
        <translation>Von ... bis ...</translation>
    </message>
    <message>
        <source>From</source>
        <translation>Von</translation>
    </message>
    <message>
        <source>To</source>
        <translation>Bis</translation>
    </message>
    <message>
        <source>Day, month, year, hour and minute; this minute is included</source>
        <translation>Tag, Monat, Jahr, Stunde und Minute; diese Minute gehört dazu</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>Stations</source>
        <translation>Stationen</translation>
    </message>
    <message>
        <source>Kind</source>
        <translation>Art</translation>
    </message>
    <message>
        <source>In any state</source>
        <translation>In jedem Zustand</translation>
    </message>
    <message>
        <source>Not acknowledged</source>
        <translation>Nicht quittiert</translation>
    </message>
    <message>
        <source>Not over</source>
        <translation>Nicht vorbei</translation>
    </message>
    <message>
        <source>Still open</source>
        <translation>Noch offen</translation>
    </message>
    <message>
        <source>State</source>
        <translation>Zustand</translation>
    </message>
    <message>
        <source>Export...</source>
        <translation>Exportieren...</translation>
    </message>
    <message>
        <source>Writes all that is found as a CSV table, not only what is shown so far</source>
        <translation>Schreibt alles, was gefunden wird, als CSV-Tabelle, nicht nur was bisher gezeigt wird</translation>
    </message>
    <message>
        <source>What was found</source>
        <translation>Was gefunden wurde</translation>
    </message>
    <message>
        <source>The first time is later than the second</source>
        <translation>Der Beginn liegt nach dem Ende</translation>
    </message>
    <message>
        <source>All operators</source>
        <translation>Alle Bediener</translation>
    </message>
    <message>
        <source>Operator</source>
        <translation>Bediener</translation>
    </message>
    <message>
        <source>Who did it</source>
        <translation>Wer es getan hat</translation>
    </message>
    <message>
        <source>Who acknowledged it</source>
        <translation>Wer ihn quittiert hat</translation>
    </message>
    <message>
        <source>Shown: %1, further ones when scrolling</source>
        <translation>Gezeigt: %1, weitere beim Blättern</translation>
    </message>
    <message>
        <source>Found: %1</source>
        <translation>Gefunden: %1</translation>
    </message>
    <message>
        <source>Searching … found so far: %1</source>
        <translation>Suche läuft … bisher gefunden: %1</translation>
    </message>
    <message>
        <source>Exported: %1</source>
        <translation>Exportiert: %1</translation>
    </message>
    <message>
        <source>events %1.csv</source>
        <translation>Ereignisse %1.csv</translation>
    </message>
    <message>
        <source>alarms %1.csv</source>
        <translation>Alarme %1.csv</translation>
    </message>
    <message>
        <source>CSV table</source>
        <translation>CSV-Tabelle</translation>
    </message>
    <message>
        <source>The export failed: %1</source>
        <translation>Der Export ist fehlgeschlagen: %1</translation>
    </message>
    <message>
        <source>%1: entries exported: %2</source>
        <translation>%1: exportierte Einträge: %2</translation>
    </message>
    <message>
        <source>All kinds</source>
        <translation>Alle Arten</translation>
    </message>
    <message>
        <source>Notifications</source>
        <translation>Meldungen</translation>
    </message>
    <message>
        <source>About alarms</source>
        <translation>Zu Alarmen</translation>
    </message>
    <message>
        <source>Input values</source>
        <translation>Eingangswerte</translation>
    </message>
    <message>
        <source>History</source>
        <translation>Historie</translation>
    </message>
    <message>
        <source>Connections</source>
        <translation>Verbindungen</translation>
    </message>
    <message>
        <source>Operators&apos; actions</source>
        <translation>Handlungen der Bediener</translation>
    </message>
    <message>
        <source>Program</source>
        <translation>Programm</translation>
    </message>
    <message>
        <source>Show in the tree</source>
        <translation>Im Baum zeigen</translation>
    </message>
    <message>
        <source>The station of the chosen line (Enter or double click in the list)</source>
        <translation>Die Station der gewählten Zeile (Eingabetaste oder Doppelklick in der Liste)</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
    <message>
        <source>Sorted: the newest %1, further ones when scrolling</source>
        <translation>Sortiert: die neuesten %1, weitere beim Blättern</translation>
    </message>
    <message>
        <source>The station &quot;%1&quot; is no longer in the list</source>
        <translation>Die Station „%1“ steht nicht mehr in der Liste</translation>
    </message>
    <message>
        <source>Contained in what was said, done and written; in input values, history and connections when these are the kind, or with stations and a time</source>
        <translation>Enthalten in dem, was gesagt, getan und geschrieben wurde; in Eingangswerten, Historie und Verbindungen, wenn diese Art gewählt ist, oder mit Stationen und Zeitraum</translation>
    </message>
    <message>
        <source>This text is not searched for in input values, history, connections, attributes and the program&apos;s starts, unless &quot;Input values&quot;, &quot;History&quot; or &quot;Connections&quot; is chosen, or stations and a time.</source>
        <translation>In Eingangswerten, Historie, Verbindungen, Attributen und Programmstarts wird dieser Text nicht gesucht, außer wenn „Eingangswerte“, „Historie“ oder „Verbindungen“ gewählt ist oder Stationen und ein Zeitraum.</translation>
    </message>
    <message>
        <source>Contained in the name of the station, also of one that has left the list. Several are separated by semicolons; a whole name stands in quotation marks.</source>
        <translation>Enthalten im Namen der Station, auch einer, die nicht mehr in der Liste steht. Mehrere werden durch Semikolon getrennt; ein ganzer Name steht in Anführungszeichen (&quot;).</translation>
    </message>
    <message>
        <source>Silent, alive, changed</source>
        <translation>Stumm, aktiv, geändert</translation>
    </message>
</context>
<context>
    <name>ktr::FirmwareUpload</name>
    <message>
        <source>there is no such file</source>
        <translation>diese Datei gibt es nicht</translation>
    </message>
    <message>
        <source>is empty</source>
        <translation>ist leer</translation>
    </message>
    <message>
        <source>A firmware upload is already running</source>
        <translation>Es wird bereits eine Firmware übertragen</translation>
    </message>
    <message>
        <source>No connection to send the firmware over</source>
        <translation>Keine Verbindung, über die die Firmware gesendet werden kann</translation>
    </message>
    <message>
        <source>%1 has %2 bytes; only the first %3 are sent</source>
        <translation>%1 hat %2 Bytes; nur die ersten %3 werden gesendet</translation>
    </message>
    <message>
        <source>%1 has %2 bytes; it is filled up to %3 with FF</source>
        <translation>%1 hat %2 Bytes; bis %3 wird mit FF aufgefüllt</translation>
    </message>
</context>
<context>
    <name>ktr::FleetModel</name>
    <message>
        <source>%1 of %2 commands</source>
        <translation>%1 von %2 Befehlen</translation>
    </message>
    <message>
        <source>all %1 commands: nothing is proved</source>
        <translation>alle %1 Befehle: nichts ist bewiesen</translation>
    </message>
    <message>
        <source>all %1 commands</source>
        <translation>alle %1 Befehle</translation>
    </message>
    <message>
        <source>; identifier &quot;%1&quot;</source>
        <translation>; Kennung „%1“</translation>
    </message>
    <message>
        <source>; problems: %1</source>
        <translation>; Probleme: %1</translation>
    </message>
    <message>
        <source>waits</source>
        <translation>wartet</translation>
    </message>
    <message>
        <source>begins</source>
        <translation>beginnt</translation>
    </message>
    <message>
        <source>step %1 of %2</source>
        <translation>Schritt %1 von %2</translation>
    </message>
    <message>
        <source>Station</source>
        <translation>Station</translation>
    </message>
    <message>
        <source>Address</source>
        <translation>Adresse</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Datei</translation>
    </message>
    <message>
        <source>Will be sent</source>
        <translation>Wird gesendet</translation>
    </message>
    <message>
        <source>Outcome</source>
        <translation>Ergebnis</translation>
    </message>
</context>
<context>
    <name>ktr::FleetRun</name>
    <message>
        <source>cancelled</source>
        <translation>abgebrochen</translation>
    </message>
    <message>
        <source>not begun</source>
        <translation>nicht begonnen</translation>
    </message>
    <message>
        <source>%1 commands in %2 s</source>
        <translation>%1 Befehle in %2 s</translation>
    </message>
</context>
<context>
    <name>ktr::FleetWindow</name>
    <message>
        <source>Transmit to several stations</source>
        <translation>An mehrere Stationen übertragen</translation>
    </message>
    <message>
        <source>Files in:</source>
        <translation>Dateien in:</translation>
    </message>
    <message>
        <source>a folder; without one the files transmitted last</source>
        <translation>ein Ordner; ohne ihn die zuletzt übertragenen Dateien</translation>
    </message>
    <message>
        <source>A station&apos;s file has its name as identifier, or its address</source>
        <translation>Die Datei einer Station hat deren Namen als Kennung oder deren Adresse</translation>
    </message>
    <message>
        <source>The file of the station that is chosen in the list</source>
        <translation>Die Datei der Station, die in der Liste gewählt ist</translation>
    </message>
    <message>
        <source>Set in them:</source>
        <translation>Darin setzen:</translation>
    </message>
    <message>
        <source>Field</source>
        <translation>Feld</translation>
    </message>
    <message>
        <source>As on the pages (&quot;LV 4/Notification&quot;) or as in the file; &quot;number 1&quot;</source>
        <translation>Wie auf den Seiten („GW 4/Meldung“) oder wie in der Datei; „Rufnummer 1“</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Wert</translation>
    </message>
    <message>
        <source>Saves the value in the files of the ticked stations: in all of them or in none</source>
        <translation>Speichert den Wert in den Dateien der angekreuzten Stationen: in allen oder in keiner</translation>
    </message>
    <message>
        <source>Find stations</source>
        <translation>Stationen suchen</translation>
    </message>
    <message>
        <source>Stations</source>
        <translation>Stationen</translation>
    </message>
    <message>
        <source>The space bar ticks the stations that are chosen</source>
        <translation>Die Leertaste kreuzt die gewählten Stationen an</translation>
    </message>
    <message>
        <source>There are no stations</source>
        <translation>Es gibt keine Stationen</translation>
    </message>
    <message>
        <source>Differences</source>
        <translation>Unterschiede</translation>
    </message>
    <message>
        <source>All is sent to a module of which it is not proved what it holds</source>
        <translation>An ein Modul, von dem nicht bewiesen ist, was es enthält, wird alles gesendet</translation>
    </message>
    <message>
        <source>At a time:</source>
        <translation>Zugleich:</translation>
    </message>
    <message>
        <source>Receipts in:</source>
        <translation>Belege in:</translation>
    </message>
    <message>
        <source>none</source>
        <translation>keine</translation>
    </message>
    <message>
        <source>A PDF for each transmission</source>
        <translation>Ein PDF für jede Übertragung</translation>
    </message>
    <message>
        <source>The module holds</source>
        <translation>Das Modul enthält</translation>
    </message>
    <message>
        <source>It gets</source>
        <translation>Es erhält</translation>
    </message>
    <message>
        <source>%1 is no folder</source>
        <translation>%1 ist kein Ordner</translation>
    </message>
    <message>
        <source>%1 is written by every edit</source>
        <translation>%1 schreibt jede Änderung selbst</translation>
    </message>
    <message>
        <source>Nothing was saved</source>
        <translation>Es wurde nichts gespeichert</translation>
    </message>
    <message>
        <source>Changed: %1 of %2 files</source>
        <translation>Geändert: %1 von %2 Dateien</translation>
    </message>
    <message>
        <source>%1 of %2 stations are whole, after %3 s</source>
        <translation>%1 von %2 Stationen sind vollständig, nach %3 s</translation>
    </message>
    <message>
        <source>Results</source>
        <translation>Ergebnisse</translation>
    </message>
    <message>
        <source>Written: %1</source>
        <translation>Geschrieben: %1</translation>
    </message>
    <message>
        <source>%1 ticked, %2 with a file</source>
        <translation>%1 angekreuzt, %2 mit Datei</translation>
    </message>
    <message>
        <source>Folder...</source>
        <translation>Ordner...</translation>
    </message>
    <message>
        <source>File...</source>
        <translation>Datei...</translation>
    </message>
    <message>
        <source>Set in %1 files</source>
        <translation>In %1 Dateien setzen</translation>
    </message>
    <message>
        <source>All that are shown</source>
        <translation>Alle angezeigten</translation>
    </message>
    <message>
        <source>Only what differs</source>
        <translation>Nur was sich unterscheidet</translation>
    </message>
    <message>
        <source>Folder for receipts...</source>
        <translation>Ordner für Belege...</translation>
    </message>
    <message>
        <source>Transmit to %1</source>
        <translation>An %1 übertragen</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Retry %1</source>
        <translation>%1 wiederholen</translation>
    </message>
    <message>
        <source>Results...</source>
        <translation>Ergebnisse...</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>%1 of %2 have ended, %3 s</source>
        <translation>%1 von %2 sind beendet, %3 s</translation>
    </message>
    <message>
        <source>Problem: %1</source>
        <translation>Problem: %1</translation>
    </message>
    <message>
        <source>%1: %2 fields differ from what it holds if it tells the version %3</source>
        <translation>%1: %2 Felder sind anders als im Modul, wenn es die Version %3 meldet</translation>
    </message>
    <message>
        <source>%1: nothing proves what its module holds, so all is sent</source>
        <translation>%1: nichts beweist, was das Modul enthält; es wird alles gesendet</translation>
    </message>
    <message>
        <source>Stations are being transmitted to: cancel that first</source>
        <translation>Es wird gerade übertragen: erst abbrechen</translation>
    </message>
    <message>
        <source>%1 of %2 stations are watched in the operational mode. Each is let go of while it is transmitted to, and watched again after that; its alarms do not arrive meanwhile.</source>
        <translation>%1 von %2 Stationen werden im Betriebsmodus überwacht. Jede wird losgelassen, solange an sie übertragen wird, und danach wieder überwacht; ihre Alarme kommen solange nicht an.</translation>
    </message>
</context>
<context>
    <name>ktr::ForetellWindow</name>
    <message>
        <source>What would happen</source>
        <translation>Was würde geschehen</translation>
    </message>
    <message>
        <source>Speed:</source>
        <translation>Tempo:</translation>
    </message>
    <message>
        <source>From:</source>
        <translation>Ab:</translation>
    </message>
    <message>
        <source>The module&apos;s clock at the beginning; fourteen days are shown</source>
        <translation>Die Uhr des Moduls am Anfang; gezeigt werden vierzehn Tage</translation>
    </message>
    <message>
        <source>Goes to the moment at which something happens next</source>
        <translation>Geht zu dem Augenblick, in dem als Nächstes etwas geschieht</translation>
    </message>
    <message>
        <source>Begins anew; the values stay</source>
        <translation>Beginnt von vorn; die Werte bleiben</translation>
    </message>
    <message>
        <source>Takes a table from the clipboard: time, channel and value in each line (Ctrl+V)</source>
        <translation>Nimmt eine Tabelle aus der Zwischenablage: Zeit, Kanal und Wert in jeder Zeile (Strg+V)</translation>
    </message>
    <message>
        <source>Takes such a table, or an exported archive, from a file</source>
        <translation>Nimmt eine solche Tabelle oder ein exportiertes Archiv aus einer Datei</translation>
    </message>
    <message>
        <source>Also lists when limits are passed and limit values are over</source>
        <translation>Führt auch auf, wann Grenzen verletzt werden und Grenzwerte vorbei sind</translation>
    </message>
    <message>
        <source>Switchings of fourteen days</source>
        <translation>Schaltungen von vierzehn Tagen</translation>
    </message>
    <message>
        <source>Events</source>
        <translation>Ereignisse</translation>
    </message>
    <message>
        <source>Next event</source>
        <translation>Nächstes Ereignis</translation>
    </message>
    <message>
        <source>From the beginning</source>
        <translation>Von vorn</translation>
    </message>
    <message>
        <source>Paste values</source>
        <translation>Werte einfügen</translation>
    </message>
    <message>
        <source>Values from file...</source>
        <translation>Werte aus Datei...</translation>
    </message>
    <message>
        <source>Without the table</source>
        <translation>Ohne Tabelle</translation>
    </message>
    <message>
        <source>Limits, too</source>
        <translation>Auch Grenzen</translation>
    </message>
    <message>
        <source>Give the channels values and let the clock run</source>
        <translation>Geben Sie den Kanälen Werte und lassen Sie die Uhr laufen</translation>
    </message>
    <message>
        <source>In these fourteen days no switch point switches by the calendar</source>
        <translation>In diesen vierzehn Tagen schaltet kein Schaltpunkt nach dem Kalender</translation>
    </message>
    <message>
        <source>Nothing more happens within the fourteen days</source>
        <translation>Innerhalb der vierzehn Tage geschieht nichts mehr</translation>
    </message>
    <message>
        <source>Clipboard</source>
        <translation>Zwischenablage</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Pause</translation>
    </message>
    <message>
        <source>Run</source>
        <translation>Start</translation>
    </message>
    <message>
        <source>A click or the arrow keys choose a switching; weekends are grey, holidays tinted; dashed: not known</source>
        <translation>Ein Klick oder die Pfeiltasten wählen eine Schaltung; Wochenenden sind grau, Feiertage getönt; gestrichelt: nicht bekannt</translation>
    </message>
    <message>
        <source>The module&apos;s own behaviour is not known in these points. Where the list and the timeline rest on one of them, they name its number.</source>
        <translation>In diesen Punkten ist das Verhalten des Moduls nicht bekannt. Wo die Liste und die Zeitleiste auf einem davon beruhen, nennen sie seine Nummer.</translation>
    </message>
    <message>
        <source>Assumed (%1)</source>
        <translation>Angenommen (%1)</translation>
    </message>
    <message>
        <source>%1: no value yet</source>
        <translation>%1: noch kein Wert</translation>
    </message>
    <message>
        <source>The clocks change here: when the module&apos;s shows %1 it is %2 here</source>
        <translation>Hier werden die Uhren umgestellt: Wenn die des Moduls %1 zeigt, ist es hier %2</translation>
    </message>
    <message>
        <source>Not played (%1)</source>
        <translation>Nicht gespielt (%1)</translation>
    </message>
    <message>
        <source>%1: %2 values, %3 to %4</source>
        <translation>%1: %2 Werte, %3 bis %4</translation>
    </message>
    <message>
        <source>Values by the sliders</source>
        <translation>Werte durch die Regler</translation>
    </message>
    <message>
        <source>Dismiss</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Read otherwise where ticked:</source>
        <translation>Anders gelesen, wo angehakt:</translation>
    </message>
    <message>
        <source>Instead of: %1</source>
        <translation>Statt: %1</translation>
    </message>
    <message>
        <source>Saved as %1</source>
        <translation>Gespeichert als %1</translation>
    </message>
    <message>
        <source>Saves the list of events as a table</source>
        <translation>Speichert die Liste der Ereignisse als Tabelle</translation>
    </message>
    <message>
        <source>Export...</source>
        <translation>Exportieren...</translation>
    </message>
</context>
<context>
    <name>ktr::FormMain</name>
    <message>
        <source>The settings cannot be written; what is chosen holds for this run</source>
        <translation>Die Einstellungen sind nicht schreibbar; was gewählt wird, gilt für diesen Lauf</translation>
    </message>
    <message>
        <source>A file dialog is still open; the window can be closed after it</source>
        <translation>Ein Dateidialog ist noch offen; danach lässt sich das Fenster schließen</translation>
    </message>
    <message>
        <source>Taken back: %1</source>
        <translation>Zurückgenommen: %1</translation>
    </message>
    <message>
        <source>Done again: %1</source>
        <translation>Wiederholt: %1</translation>
    </message>
    <message>
        <source>The field takes no more than %1 characters; the others were left out</source>
        <translation>Das Feld nimmt höchstens %1 Zeichen auf; die übrigen wurden weggelassen</translation>
    </message>
    <message>
        <source>While this window is connected with the station, its alarms do not arrive in the operational mode.</source>
        <translation>Solange dieses Fenster mit der Station verbunden ist, kommen ihre Alarme im Betriebsmodus nicht an.</translation>
    </message>
</context>
<context>
    <name>ktr::Form_betriebsmodus</name>
    <message>
        <source>There is no room for another station</source>
        <translation>Für eine weitere Station ist kein Platz</translation>
    </message>
    <message>
        <source>The station has no address yet</source>
        <translation>Die Station hat noch keine Adresse</translation>
    </message>
    <message>
        <source>The list of stations could not be written.</source>
        <translation>Die Liste der Stationen konnte nicht geschrieben werden.</translation>
    </message>
    <message>
        <source>Close all the same?</source>
        <translation>Trotzdem schließen?</translation>
    </message>
    <message>
        <source>%1 is silent</source>
        <translation>%1 ist stumm</translation>
    </message>
    <message>
        <source>%1 is alive</source>
        <translation>%1 ist aktiv</translation>
    </message>
    <message>
        <source>The list of stations cannot be used. It stays as it is: %1</source>
        <translation>Die Stationsliste ist nicht verwendbar. Sie bleibt, wie sie ist: %1</translation>
    </message>
    <message>
        <source>No station is watched</source>
        <translation>Keine Station wird überwacht</translation>
    </message>
    <message>
        <source>Not all of the list of stations is as it was. What is there is watched; what is damaged is kept under another name, which stands at the end.</source>
        <translation>Nicht alles in der Stationsliste ist so, wie es war. Was da ist, wird überwacht; was beschädigt ist, wird unter einem anderen Namen aufgehoben, der am Ende steht.</translation>
    </message>
    <message>
        <source>Begin with an empty list? The one that cannot be used is kept as %1.</source>
        <translation>Mit einer leeren Liste beginnen? Die unbrauchbare wird als %1 aufgehoben.</translation>
    </message>
    <message>
        <source>What changed is kept in its record and is taken up at the next opening.</source>
        <translation>Was sich geändert hat, steht in ihrer Aufzeichnung und wird beim nächsten Öffnen übernommen.</translation>
    </message>
    <message>
        <source>The record cannot be written either: what changed in this run is lost then.</source>
        <translation>Auch die Aufzeichnung kann nicht geschrieben werden: Was sich in diesem Lauf geändert hat, ist dann verloren.</translation>
    </message>
    <message>
        <source>joined: %1</source>
        <translation>mitgelesen bei %1</translation>
    </message>
    <message>
        <source>nobody watches the stations</source>
        <translation>niemand überwacht die Stationen</translation>
    </message>
    <message>
        <source>The tree has %1 entries. Kept for a year, it would have %2 less; the menu %3 offers it.</source>
        <translation>Der Baum hat %1 Einträge. Ein Jahr lang aufbewahrt, wären es %2 weniger; das Menü %3 bietet es an.</translation>
    </message>
    <message>
        <source>The station is added where the stations are watched</source>
        <translation>Die Station wird dort hinzugefügt, wo die Stationen überwacht werden</translation>
    </message>
    <message>
        <source>Muted until %1</source>
        <translation>Stumm bis %1</translation>
    </message>
    <message>
        <source>joined, but not heard: %1</source>
        <translation>mitgelesen, aber ohne Nachricht: %1</translation>
    </message>
    <message>
        <source>the record cannot be reached</source>
        <translation>die Aufzeichnung ist nicht erreichbar</translation>
    </message>
    <message>
        <source>Done in the program that watches the stations</source>
        <translation>Geschieht in dem Programm, das die Stationen überwacht</translation>
    </message>
    <message>
        <source>Whether they are watched is not known here. It is tried again all the time. %1</source>
        <translation>Ob sie überwacht werden, ist hier nicht bekannt. Es wird laufend erneut versucht. %1</translation>
    </message>
    <message>
        <source>Stations are being transmitted to</source>
        <translation>Es wird gerade an Stationen übertragen</translation>
    </message>
    <message>
        <source>Alarms cannot be heard</source>
        <translation>Alarme sind nicht zu hören</translation>
    </message>
    <message>
        <source>No alarm is open</source>
        <translation>Kein Alarm ist offen</translation>
    </message>
    <message>
        <source>put aside: %1</source>
        <translation>zurückgestellt: %1</translation>
    </message>
    <message>
        <source>closed by the removal of their stations: %1</source>
        <translation>mit dem Entfernen ihrer Stationen geschlossen: %1</translation>
    </message>
</context>
<context>
    <name>ktr::GroupsDialog</name>
    <message>
        <source>Groups of stations</source>
        <translation>Gruppen von Stationen</translation>
    </message>
    <message>
        <source>%1: %L2</source>
        <translation>%1: %L2</translation>
    </message>
    <message>
        <source>in no group: %L1</source>
        <translation>in keiner Gruppe: %L1</translation>
    </message>
    <message>
        <source>Stations</source>
        <translation>Stationen</translation>
    </message>
    <message>
        <source>[North] begins a group, each line below it is a station in it. * stands for any letters, ? for one: with &quot;Pump *&quot; all stations are meant whose names begin so. A station is in the first group that has it. With &quot;= 9, 10&quot; below a group&apos;s name the tiles of its stations show these inputs, up to four.</source>
        <translation>[Nord] beginnt eine Gruppe, jede Zeile darunter ist eine Station in ihr. * steht für beliebige Zeichen, ? für eines: mit &quot;Pumpe *&quot; sind alle Stationen gemeint, deren Namen so beginnen. Eine Station ist in der ersten Gruppe, die sie hat. Mit &quot;= 9, 10&quot; unter dem Namen einer Gruppe zeigen die Kacheln ihrer Stationen diese Eingänge, bis zu vier.</translation>
    </message>
    <message>
        <source>[North]
= 9, 17
Pump *
Tower</source>
        <translation>[Nord]
= 9, 17
Pumpe *
Turm</translation>
    </message>
</context>
<context>
    <name>ktr::HelpDesk</name>
    <message>
        <source>Acknowledge, in the lists of alarms and notifications</source>
        <translation>Quittieren, in den Listen der Alarme und Meldungen</translation>
    </message>
</context>
<context>
    <name>ktr::HelpKeys</name>
    <message>
        <source>More in the manual (F1)</source>
        <translation>Mehr im Handbuch (F1)</translation>
    </message>
</context>
<context>
    <name>ktr::HelpMenu</name>
    <message>
        <source>Manual</source>
        <translation>Handbuch</translation>
    </message>
    <message>
        <source>What is this?</source>
        <translation>Was ist das?</translation>
    </message>
    <message>
        <source>Service commands</source>
        <translation>Servicebefehle</translation>
    </message>
    <message>
        <source>Keyboard shortcuts...</source>
        <translation>Tastenkürzel...</translation>
    </message>
    <message>
        <source>What is new</source>
        <translation>Was ist neu</translation>
    </message>
    <message>
        <source>Welcome...</source>
        <translation>Willkommen...</translation>
    </message>
    <message>
        <source>Try with a virtual module</source>
        <translation>Mit einem virtuellen Modul ausprobieren</translation>
    </message>
    <message>
        <source>Try the operational mode on a virtual fleet</source>
        <translation>Den Betriebsmodus an virtuellen Stationen ausprobieren</translation>
    </message>
    <message>
        <source>Report a problem...</source>
        <translation>Problem melden...</translation>
    </message>
    <message>
        <source>What this field means</source>
        <translation>Was dieses Feld bedeutet</translation>
    </message>
</context>
<context>
    <name>ktr::HistoryPage</name>
    <message>
        <source>Inputs to draw</source>
        <translation>Darzustellende Eingänge</translation>
    </message>
    <message>
        <source>The inputs that are drawn; the space bar chooses</source>
        <translation>Die dargestellten Eingänge; die Leertaste wählt aus</translation>
    </message>
    <message>
        <source>Whole time</source>
        <translation>Ganzer Zeitraum</translation>
    </message>
    <message>
        <source>Shows the whole time (double click into the plot, or Home)</source>
        <translation>Zeigt den ganzen Zeitraum (Doppelklick ins Diagramm oder Pos1)</translation>
    </message>
    <message>
        <source>Save picture...</source>
        <translation>Bild speichern...</translation>
    </message>
    <message>
        <source>Saves the plot as it is shown as a PNG file</source>
        <translation>Speichert das Diagramm wie angezeigt als PNG-Datei</translation>
    </message>
    <message>
        <source>Choose a station to see its history.</source>
        <translation>Eine Station wählen, um ihre Historie zu sehen.</translation>
    </message>
    <message>
        <source>%1 has not sent any history yet.</source>
        <translation>%1 hat noch keine Historie gesendet.</translation>
    </message>
    <message>
        <source>Records: %1</source>
        <translation>Datensätze: %1</translation>
    </message>
    <message>
        <source>%1, from %2 to %3</source>
        <translation>%1, von %2 bis %3</translation>
    </message>
    <message>
        <source>PNG picture</source>
        <translation>PNG-Bild</translation>
    </message>
    <message>
        <source>%1: the picture is too large.</source>
        <translation>%1: Das Bild ist zu groß.</translation>
    </message>
    <message>
        <source>Saved: %1</source>
        <translation>Gespeichert: %1</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
    <message>
        <source>Remove entries...</source>
        <translation>Einträge entfernen...</translation>
    </message>
    <message>
        <source>Remove %L1 entries of the history from the tree and its file? The record keeps them.</source>
        <translation>%L1 Einträge der Historie aus dem Baum und seiner Datei entfernen? Die Aufzeichnung behält sie.</translation>
    </message>
</context>
<context>
    <name>ktr::HistoryPlot</name>
    <message>
        <source>No input with values is chosen.</source>
        <translation>Es ist kein Eingang mit Werten gewählt.</translation>
    </message>
    <message>
        <source>Point at a curve to read its values.</source>
        <translation>Zum Ablesen der Werte auf eine Kurve zeigen.</translation>
    </message>
    <message>
        <source>Values</source>
        <translation>Werte</translation>
    </message>
    <message>
        <source>Counters</source>
        <translation>Zähler</translation>
    </message>
    <message>
        <source>History over time</source>
        <translation>Historie im Zeitverlauf</translation>
    </message>
    <message>
        <source>Plus and minus zoom, the arrow keys move, Home shows the whole time, Ctrl and an arrow key go from record to record.</source>
        <translation>Plus und Minus zoomen, die Pfeiltasten verschieben, Pos1 zeigt den ganzen Zeitraum, Strg mit einer Pfeiltaste geht von Datensatz zu Datensatz.</translation>
    </message>
</context>
<context>
    <name>ktr::HistoryTableModel</name>
    <message>
        <source>Time</source>
        <translation>Zeit</translation>
    </message>
    <message>
        <source>Input</source>
        <translation>Eingang</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Wert</translation>
    </message>
</context>
<context>
    <name>ktr::HolidayCard</name>
    <message>
        <source>Date of a holiday, such as 24.12.2027</source>
        <translation>Datum eines Feiertags, zum Beispiel 24.12.2027</translation>
    </message>
    <message>
        <source>A click or the Delete key removes a date; at most %1</source>
        <translation>Ein Klick oder die Entf-Taste entfernt ein Datum; höchstens %1</translation>
    </message>
    <message>
        <source>Replaces the list with the one that is kept for you</source>
        <translation>Ersetzt die Liste durch die für diesen Benutzer gespeicherte</translation>
    </message>
    <message>
        <source>Keeps the list for other configurations</source>
        <translation>Speichert die Liste für andere Konfigurationen</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no date</source>
        <translation>„%1“ ist kein Datum</translation>
    </message>
    <message>
        <source>%1 is in the list already</source>
        <translation>%1 steht bereits in der Liste</translation>
    </message>
    <message>
        <source>Holiday removed: %1</source>
        <translation>Feiertag entfernt: %1</translation>
    </message>
    <message>
        <source>Holidays loaded: %1</source>
        <translation>Feiertage geladen: %1</translation>
    </message>
    <message>
        <source>Holidays stored: %1</source>
        <translation>Feiertage gespeichert: %1</translation>
    </message>
    <message>
        <source>The holidays could not be stored in your settings</source>
        <translation>Die Feiertage konnten nicht in den Benutzereinstellungen gespeichert werden</translation>
    </message>
    <message>
        <source>Holidays deleted: %1</source>
        <translation>Feiertage gelöscht: %1</translation>
    </message>
</context>
<context>
    <name>ktr::ImportedStationsModel</name>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Address</source>
        <translation>Adresse</translation>
    </message>
    <message>
        <source>Remark</source>
        <translation>Bemerkung</translation>
    </message>
</context>
<context>
    <name>ktr::InfoPage</name>
    <message>
        <source>What the module holds, as last reported</source>
        <translation>Stand im Modul, wie zuletzt von ihm gemeldet</translation>
    </message>
    <message>
        <source>The program in the module, as last reported</source>
        <translation>Applikation im Modul, wie zuletzt von ihm gemeldet</translation>
    </message>
    <message>
        <source>Files</source>
        <translation>Dateien</translation>
    </message>
    <message>
        <source>Choose the log file</source>
        <translation>Logdatei wählen</translation>
    </message>
    <message>
        <source>Choose the history export file</source>
        <translation>Exportdatei der Historie wählen</translation>
    </message>
    <message>
        <source>Choose…</source>
        <translation>Wählen…</translation>
    </message>
    <message>
        <source>Read version</source>
        <translation>Version lesen</translation>
    </message>
    <message>
        <source>Asks the module what it holds: sends V,§</source>
        <translation>Fragt das Modul, was es enthält: sendet V,§</translation>
    </message>
</context>
<context>
    <name>ktr::InputGrid</name>
    <message>
        <source>Choose the field first whose value those below are to have</source>
        <translation>Wählen Sie zuerst das Feld, dessen Wert die darunter haben sollen</translation>
    </message>
    <message>
        <source>There is no field below this one</source>
        <translation>Unter diesem Feld ist keines</translation>
    </message>
    <message>
        <source>What is on the clipboard is too long for the inputs</source>
        <translation>Der Inhalt der Zwischenablage ist zu lang für die Eingänge</translation>
    </message>
    <message>
        <source>. Nothing was pasted</source>
        <translation>. Nichts wurde eingefügt</translation>
    </message>
    <message>
        <source>There are only empty cells on the clipboard</source>
        <translation>In der Zwischenablage sind nur leere Zellen</translation>
    </message>
    <message>
        <source>Row %1, column %2 on the clipboard: there is no field for %3</source>
        <translation>Zeile %1, Spalte %2 der Zwischenablage: Für %3 gibt es kein Feld</translation>
    </message>
    <message>
        <source>Row %1, column %2 on the clipboard: %3 is no value for %4</source>
        <translation>Zeile %1, Spalte %2 der Zwischenablage: %3 ist kein Wert für %4</translation>
    </message>
    <message>
        <source>Fields filled down: %1</source>
        <translation>Nach unten ausgefüllte Felder: %1</translation>
    </message>
    <message>
        <source>Fields pasted: %1</source>
        <translation>Eingefügte Felder: %1</translation>
    </message>
    <message>
        <source>%1, in place of other values: %2</source>
        <translation>%1, statt anderer Werte: %2</translation>
    </message>
</context>
<context>
    <name>ktr::InputPage</name>
    <message>
        <source>By two points...</source>
        <translation>Aus zwei Punkten...</translation>
    </message>
    <message>
        <source>Finds offset and factor of an analog channel by two values that are known</source>
        <translation>Bestimmt Offset und Faktor eines analogen Kanals aus zwei bekannten Werten</translation>
    </message>
</context>
<context>
    <name>ktr::InterfaceLanguage</name>
    <message>
        <source>The file of a language cannot be read: %1</source>
        <translation>Die Datei einer Sprache ist nicht lesbar: %1</translation>
    </message>
</context>
<context>
    <name>ktr::JoinedList</name>
    <message>
        <source>The record can be read again</source>
        <translation>Die Aufzeichnung lässt sich wieder lesen</translation>
    </message>
    <message>
        <source>%1: the list is in use by %2</source>
        <translation>%1: Die Liste wird schon benutzt, und zwar von %2</translation>
    </message>
    <message>
        <source>%1: not understood: %2</source>
        <translation>%1: nicht verstanden: %2</translation>
    </message>
    <message>
        <source>Nobody watches the stations: nobody can be asked</source>
        <translation>Niemand überwacht die Stationen: niemand kann gefragt werden</translation>
    </message>
    <message>
        <source>Another program watches the stations; it is done there</source>
        <translation>Ein anderes Programm überwacht die Stationen; dort ist das zu tun</translation>
    </message>
    <message>
        <source>The record cannot be reached: nobody can be asked</source>
        <translation>Die Aufzeichnung ist nicht erreichbar: Niemand kann gefragt werden</translation>
    </message>
    <message>
        <source>The database does not let this user do that</source>
        <translation>Die Datenbank erlaubt das diesem Benutzer nicht</translation>
    </message>
</context>
<context>
    <name>ktr::KeepingTrouble</name>
    <message>
        <source>What happens is written to the record again</source>
        <translation>Was geschieht, wird wieder aufgezeichnet</translation>
    </message>
</context>
<context>
    <name>ktr::KeptList</name>
    <message>
        <source>%1: the list is in use by %2</source>
        <translation>%1: Die Liste wird schon benutzt, und zwar von %2</translation>
    </message>
    <message>
        <source>%1: the list is in use by %2. Modules answer who announced last: what is told here is missing there, and the other way round</source>
        <translation>%1: Die Liste wird schon benutzt, und zwar von %2. Module antworten dem, der sich zuletzt gemeldet hat: was hier ankommt, fehlt dort, und umgekehrt</translation>
    </message>
    <message>
        <source>%1; another program that uses the list at the same time is not noticed</source>
        <translation>%1; ein anderes Programm, das die Liste gleichzeitig benutzt, wird nicht bemerkt</translation>
    </message>
    <message>
        <source>The program did not end properly last time; changes taken up from the record: %1</source>
        <translation>Das Programm wurde zuletzt nicht ordentlich beendet; aus der Aufzeichnung übernommene Änderungen: %1</translation>
    </message>
    <message>
        <source>%1: as it is now it is kept as &quot;%2&quot; beside it when the list is written</source>
        <translation>%1: so, wie sie jetzt ist, wird diese Datei daneben als „%2“ aufgehoben, wenn die Liste geschrieben wird</translation>
    </message>
    <message>
        <source>%1: the record was gone; a new one was begun</source>
        <translation>%1: Die Aufzeichnung war nicht mehr da; eine neue wurde begonnen</translation>
    </message>
</context>
<context>
    <name>ktr::KeysWindow</name>
    <message>
        <source>Keyboard shortcuts</source>
        <translation>Tastenkürzel</translation>
    </message>
    <message>
        <source>Search for a command or a key</source>
        <translation>Nach einem Befehl oder einer Taste suchen</translation>
    </message>
    <message>
        <source>Keys</source>
        <translation>Tasten</translation>
    </message>
    <message>
        <source>Command</source>
        <translation>Befehl</translation>
    </message>
    <message>
        <source>Menu</source>
        <translation>Menü</translation>
    </message>
    <message>
        <source>Window</source>
        <translation>Fenster</translation>
    </message>
    <message>
        <source>%1 of %2 commands with a key</source>
        <translation>%1 von %2 Befehlen mit einer Taste</translation>
    </message>
</context>
<context>
    <name>ktr::LengthCounter</name>
    <message>
        <source>%1 of %2</source>
        <translation>%1 von %2</translation>
    </message>
    <message>
        <source>%1 of %2: too long</source>
        <translation>%1 von %2: zu lang</translation>
    </message>
    <message>
        <source>Characters of the command that is sent; a longer one does not fit an SMS and is not sent</source>
        <translation>Zeichen des Befehls, der gesendet wird; ein längerer passt in keine SMS und wird nicht gesendet</translation>
    </message>
</context>
<context>
    <name>ktr::LimitValuePage</name>
    <message>
        <source>less than the limit</source>
        <translation>kleiner als der Grenzwert</translation>
    </message>
    <message>
        <source>equal to the limit</source>
        <translation>gleich dem Grenzwert</translation>
    </message>
    <message>
        <source>greater than the limit</source>
        <translation>größer als der Grenzwert</translation>
    </message>
    <message>
        <source>The count per interval: this input counts pulses</source>
        <translation>Die Anzahl pro Intervall: dieser Eingang zählt Impulse</translation>
    </message>
    <message>
        <source>The notification waits so long</source>
        <translation>So lange wartet die Meldung</translation>
    </message>
</context>
<context>
    <name>ktr::LinkDialogs</name>
    <message>
        <source>Stop the transmission</source>
        <translation>Übertragung abbrechen</translation>
    </message>
    <message>
        <source>Go on</source>
        <translation>Fortfahren</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
</context>
<context>
    <name>ktr::LinkLog</name>
    <message>
        <source>%1 is not a file; there is no log</source>
        <translation>%1 ist keine Datei; es wird kein Protokoll geführt</translation>
    </message>
    <message>
        <source>The log is incomplete: %1</source>
        <translation>Das Protokoll ist unvollständig: %1</translation>
    </message>
</context>
<context>
    <name>ktr::LinkPresenter</name>
    <message>
        <source>searching</source>
        <translation>Suche läuft</translation>
    </message>
    <message>
        <source>listening on %1</source>
        <translation>wartet an %1</translation>
    </message>
    <message>
        <source>Waiting until the module reads its SMS</source>
        <translation>Warten, bis das Modul seine SMS liest</translation>
    </message>
    <message>
        <source>%1 is sent when the module next reads an SMS</source>
        <translation>%1 wird gesendet, sobald das Modul seine SMS liest</translation>
    </message>
    <message>
        <source>Firmware: %1 of %2 bytes sent</source>
        <translation>Firmware: %1 von %2 Bytes gesendet</translation>
    </message>
    <message>
        <source>The firmware was sent</source>
        <translation>Die Firmware wurde gesendet</translation>
    </message>
    <message>
        <source>The sending of the firmware was broken off</source>
        <translation>Das Senden der Firmware wurde abgebrochen</translation>
    </message>
    <message>
        <source>%1 is sent to the module as its new application: %2 bytes.</source>
        <translation>%1 wird als neue Applikation an das Modul gesendet: %2 Bytes.</translation>
    </message>
    <message>
        <source>%1 is sent to the module as its new application: %2 bytes, filled up to %3.</source>
        <translation>%1 wird als neue Applikation an das Modul gesendet: %2 Bytes, aufgefüllt auf %3.</translation>
    </message>
    <message>
        <source>%1 is sent to the module as its new application, cut off: the first %2 of its %3 bytes.</source>
        <translation>%1 wird als neue Applikation an das Modul gesendet, abgeschnitten: die ersten %2 von %3 Bytes.</translation>
    </message>
    <message>
        <source>%1 is not sent: a configuration is being transmitted</source>
        <translation>%1 wird nicht gesendet: Es wird gerade eine Konfiguration übertragen</translation>
    </message>
    <message>
        <source>The configuration is being transmitted</source>
        <translation>Die Konfiguration wird übertragen</translation>
    </message>
    <message>
        <source>%1 is sent when the module next reads an SMS, in place of %2, which is not sent</source>
        <translation>%1 wird gesendet, sobald das Modul seine SMS liest, anstelle von %2, das nicht gesendet wird</translation>
    </message>
    <message>
        <source>Nothing is sent: %1, which stands on the page Connection, is not connected. Connect to it there, or to what is to be used.</source>
        <translation>Nichts wird gesendet: %1 steht auf der Seite Verbindung, ist aber nicht verbunden. Verbinden Sie dort damit oder mit dem, was benutzt werden soll.</translation>
    </message>
</context>
<context>
    <name>ktr::ListBanner</name>
    <message>
        <source>No station is watched</source>
        <translation>Keine Station wird überwacht</translation>
    </message>
    <message>
        <source>Try again</source>
        <translation>Erneut versuchen</translation>
    </message>
    <message>
        <source>Opens the list of stations again</source>
        <translation>Öffnet die Stationsliste noch einmal</translation>
    </message>
    <message>
        <source>Begin an empty list</source>
        <translation>Leere Liste beginnen</translation>
    </message>
    <message>
        <source>Keeps the list that cannot be used under another name and begins an empty one</source>
        <translation>Hebt die nicht verwendbare Liste unter anderem Namen auf und beginnt eine leere</translation>
    </message>
    <message>
        <source>Not all of the list of stations is as it was</source>
        <translation>Nicht alles in der Stationsliste ist, wie es war</translation>
    </message>
    <message>
        <source>Noted</source>
        <translation>Gelesen</translation>
    </message>
    <message>
        <source>Hides this message; the damaged file is kept under another name</source>
        <translation>Blendet diese Meldung aus; die beschädigte Datei bleibt unter anderem Namen erhalten</translation>
    </message>
    <message>
        <source>Another program could watch these stations unnoticed</source>
        <translation>Ein anderes Programm könnte diese Stationen unbemerkt überwachen</translation>
    </message>
    <message>
        <source>Alarms and changes cannot be written to the disk</source>
        <translation>Alarme und Änderungen können nicht auf den Datenträger geschrieben werden</translation>
    </message>
    <message>
        <source>Hides this message</source>
        <translation>Blendet diese Meldung aus</translation>
    </message>
    <message>
        <source>Another program watches these stations; they are shown here, too</source>
        <translation>Ein anderes Programm überwacht diese Stationen; hier sind sie auch zu sehen</translation>
    </message>
    <message>
        <source>Nobody watches the stations</source>
        <translation>Niemand überwacht die Stationen</translation>
    </message>
    <message>
        <source>Watch here</source>
        <translation>Hier überwachen</translation>
    </message>
    <message>
        <source>Opens the list of stations again and talks with the modules from here</source>
        <translation>Öffnet die Liste der Stationen neu und spricht von hier aus mit den Modulen</translation>
    </message>
    <message>
        <source>The program that watches the stations is not heard</source>
        <translation>Von dem Programm, das die Stationen überwacht, kommt nichts mehr</translation>
    </message>
    <message>
        <source>The record cannot be reached</source>
        <translation>Die Aufzeichnung ist nicht erreichbar</translation>
    </message>
    <message>
        <source>The record is being opened</source>
        <translation>Die Aufzeichnung wird geöffnet</translation>
    </message>
    <message>
        <source>The stations cannot be shown</source>
        <translation>Die Stationen können nicht angezeigt werden</translation>
    </message>
    <message>
        <source>A file beside the list of stations cannot be used as it is</source>
        <translation>Eine Datei neben der Stationsliste ist so nicht verwendbar</translation>
    </message>
    <message>
        <source>Reads the file again</source>
        <translation>Liest die Datei noch einmal</translation>
    </message>
    <message>
        <source>The alarm rules of the record cannot be used</source>
        <translation>Die Alarmregeln der Aufzeichnung sind nicht zu brauchen</translation>
    </message>
</context>
<context>
    <name>ktr::ListNotices</name>
    <message>
        <source>Since %1 nothing arrives here. The stations may be watched all the same; what is shown is how it was then. It is tried again all the time. %2</source>
        <translation>Seit %1 kommt hier nichts mehr an. Die Stationen werden vielleicht trotzdem überwacht; angezeigt wird der Stand von damals. Es wird laufend erneut versucht. %2</translation>
    </message>
    <message>
        <source>The record cannot be reached</source>
        <translation>Die Aufzeichnung ist nicht erreichbar</translation>
    </message>
    <message>
        <source>Since %1 no alarm arrives. What is shown is how it was then.</source>
        <translation>Seit %1 kommt kein Alarm mehr an. Zu sehen ist, wie es da war.</translation>
    </message>
    <message>
        <source>Nobody watches the stations</source>
        <translation>Niemand überwacht die Stationen</translation>
    </message>
    <message>
        <source>For more than %1 s, since %2, nothing has come from it: perhaps nobody watches, and what is shown is how it was then. If it hangs, end it (%3); then the stations can be watched here.</source>
        <translation>Seit über %1 s, seit %2, kommt von ihm nichts: Womöglich überwacht niemand, und angezeigt wird der Stand von damals. Wenn es hängt, beenden Sie es (%3); dann können die Stationen hier überwacht werden.</translation>
    </message>
    <message>
        <source>The program that watches the stations is not heard</source>
        <translation>Von dem Programm, das die Stationen überwacht, kommt nichts mehr</translation>
    </message>
    <message>
        <source>Watched by %1</source>
        <translation>Überwacht von %1</translation>
    </message>
    <message>
        <source>Since %1; changes that wait: %2. It is tried again all the time; what is not written when the program or the system ends is lost. %3</source>
        <translation>Seit %1; wartende Änderungen: %2. Es wird laufend neu versucht; was nicht geschrieben ist, wenn das Programm oder das System endet, ist verloren. %3</translation>
    </message>
    <message>
        <source>They are damaged. Until others are set, a text with &quot;fail&quot; is an alarm and no other. The menu Alarms, Alarm rules, shows these; OK keeps them in the place of the damaged ones.</source>
        <translation>Sie sind beschädigt. Bis andere gesetzt sind, ist ein Text mit „fail“ ein Alarm und kein anderer. Das Menü Alarme, Alarmregeln, zeigt diese; OK behält sie anstelle der beschädigten.</translation>
    </message>
</context>
<context>
    <name>ktr::LogView</name>
    <message>
        <source>Pause</source>
        <translation>Anhalten</translation>
    </message>
    <message>
        <source>Holds the display; what comes meanwhile is shown afterwards</source>
        <translation>Hält die Anzeige an; was inzwischen kommt, wird danach gezeigt</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Suchen</translation>
    </message>
    <message>
        <source>Enter goes to the next place</source>
        <translation>Die Eingabetaste geht zur nächsten Stelle</translation>
    </message>
    <message>
        <source>Save...</source>
        <translation>Speichern...</translation>
    </message>
</context>
<context>
    <name>ktr::MainMenu</name>
    <message>
        <source>Recent files</source>
        <translation>Zuletzt verwendete Dateien</translation>
    </message>
    <message>
        <source>Edit</source>
        <translation>Bearbeiten</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Rückgängig</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>Wiederholen</translation>
    </message>
    <message>
        <source>Search serial ports</source>
        <translation>Serielle Ports durchsuchen</translation>
    </message>
    <message>
        <source>Show problems</source>
        <translation>Probleme anzeigen</translation>
    </message>
    <message>
        <source>Toolbar</source>
        <translation>Symbolleiste</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Compare...</source>
        <translation>Vergleichen...</translation>
    </message>
    <message>
        <source>Transmissions...</source>
        <translation>Übertragungen...</translation>
    </message>
    <message>
        <source>New from this one</source>
        <translation>Neu nach dieser</translation>
    </message>
    <message>
        <source>This entry</source>
        <translation>Dieser Eintrag</translation>
    </message>
    <message>
        <source>Cut entry</source>
        <translation>Eintrag ausschneiden</translation>
    </message>
    <message>
        <source>Copy entry</source>
        <translation>Eintrag kopieren</translation>
    </message>
    <message>
        <source>Paste entry</source>
        <translation>Eintrag einfügen</translation>
    </message>
    <message>
        <source>Duplicate entry</source>
        <translation>Eintrag verdoppeln</translation>
    </message>
    <message>
        <source>Clear entry</source>
        <translation>Eintrag leeren</translation>
    </message>
    <message>
        <source>Move up</source>
        <translation>Nach oben verschieben</translation>
    </message>
    <message>
        <source>Move down</source>
        <translation>Nach unten verschieben</translation>
    </message>
    <message>
        <source>Move to...</source>
        <translation>Verschieben nach...</translation>
    </message>
    <message>
        <source>Fill down</source>
        <translation>Nach unten ausfüllen</translation>
    </message>
    <message>
        <source>Next entry</source>
        <translation>Nächster Eintrag</translation>
    </message>
    <message>
        <source>Previous entry</source>
        <translation>Voriger Eintrag</translation>
    </message>
    <message>
        <source>What would happen...</source>
        <translation>Was würde geschehen...</translation>
    </message>
    <message>
        <source>Names of the inputs and outputs...</source>
        <translation>Namen der Ein- und Ausgänge...</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Hilfe</translation>
    </message>
</context>
<context>
    <name>ktr::MaintenanceCard</name>
    <message>
        <source>Its alarms are told.</source>
        <translation>Ihre Alarme werden gemeldet.</translation>
    </message>
    <message>
        <source>In maintenance until %1</source>
        <translation>In Wartung bis %1</translation>
    </message>
    <message>
        <source>In maintenance until %1 (%2)</source>
        <translation>In Wartung bis %1 (%2)</translation>
    </message>
    <message>
        <source>Puts all alarms of the station aside until a time, with a reason</source>
        <translation>Stellt alle Alarme der Station bis zu einer Zeit zurück, mit einem Grund</translation>
    </message>
    <message>
        <source>Its alarms are told again at once</source>
        <translation>Ihre Alarme werden sofort wieder gemeldet</translation>
    </message>
    <message>
        <source>Maintenance</source>
        <translation>Wartung</translation>
    </message>
    <message>
        <source>Maintenance...</source>
        <translation>Wartung...</translation>
    </message>
    <message>
        <source>End the maintenance</source>
        <translation>Wartung beenden</translation>
    </message>
</context>
<context>
    <name>ktr::ManualWindow</name>
    <message>
        <source>Manual</source>
        <translation>Handbuch</translation>
    </message>
    <message>
        <source>Back (%1)</source>
        <translation>Zurück (%1)</translation>
    </message>
    <message>
        <source>Forward (%1)</source>
        <translation>Vor (%1)</translation>
    </message>
    <message>
        <source>First page</source>
        <translation>Erste Seite</translation>
    </message>
    <message>
        <source>Search the manual</source>
        <translation>Im Handbuch suchen</translation>
    </message>
    <message>
        <source>Chapters</source>
        <translation>Kapitel</translation>
    </message>
    <message>
        <source>Found in the manual</source>
        <translation>Im Handbuch gefunden</translation>
    </message>
    <message>
        <source>Page of the manual</source>
        <translation>Seite des Handbuchs</translation>
    </message>
    <message>
        <source>Nothing in the manual has these words</source>
        <translation>Nichts im Handbuch hat diese Wörter</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Zurück</translation>
    </message>
    <message>
        <source>Forward</source>
        <translation>Vorwärts</translation>
    </message>
    <message>
        <source>Larger letters</source>
        <translation>Größere Schrift</translation>
    </message>
    <message>
        <source>Smaller letters</source>
        <translation>Kleinere Schrift</translation>
    </message>
</context>
<context>
    <name>ktr::ManyLine</name>
    <message>
        <source>Stop</source>
        <translation>Anhalten</translation>
    </message>
    <message>
        <source>Leaves out the stations whose turn has not come</source>
        <translation>Lässt die Stationen aus, die noch nicht an der Reihe waren</translation>
    </message>
    <message>
        <source>Brings the stations back with their settings, entries and places (Ctrl+Z)</source>
        <translation>Holt die Stationen mit Einstellungen, Einträgen und Plätzen zurück (Strg+Z)</translation>
    </message>
    <message>
        <source>Lists the stations and the reasons</source>
        <translation>Listet die Stationen und die Gründe auf</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Fortschritt</translation>
    </message>
    <message>
        <source>%L1 stations chosen</source>
        <translation>%L1 Stationen gewählt</translation>
    </message>
    <message>
        <source>1 station removed – Undo</source>
        <translation>1 Station entfernt – rückgängig</translation>
    </message>
    <message>
        <source>%L1 stations removed – Undo</source>
        <translation>%L1 Stationen entfernt – rückgängig</translation>
    </message>
    <message>
        <source>Not done: %L1</source>
        <translation>Nicht ausgeführt: %L1</translation>
    </message>
</context>
<context>
    <name>ktr::MessageIntake</name>
    <message>
        <source>%1: not understood: %2</source>
        <translation>%1: nicht verstanden: %2</translation>
    </message>
</context>
<context>
    <name>ktr::MessageLine</name>
    <message>
        <source>Messages</source>
        <translation>Nachrichten</translation>
    </message>
    <message>
        <source>Lists the messages since the operational mode was opened</source>
        <translation>Listet die Nachrichten seit dem Öffnen des Betriebsmodus</translation>
    </message>
    <message>
        <source>Click to take note</source>
        <translation>Klicken zur Kenntnisnahme</translation>
    </message>
</context>
<context>
    <name>ktr::ModuleLine</name>
    <message>
        <source>Looking for the module at %1</source>
        <translation>Das Modul wird an %1 gesucht</translation>
    </message>
    <message>
        <source>No firmware is sent: %1</source>
        <translation>Es wird keine Firmware gesendet: %1</translation>
    </message>
    <message>
        <source>Looking for the module at all serial ports</source>
        <translation>Das Modul wird an allen seriellen Ports gesucht</translation>
    </message>
    <message>
        <source>There is no serial port yet; the search goes on</source>
        <translation>Es gibt noch keinen seriellen Port; die Suche geht weiter</translation>
    </message>
    <message>
        <source>There is no port %1 yet; the search goes on</source>
        <translation>Den Port %1 gibt es noch nicht; die Suche geht weiter</translation>
    </message>
</context>
<context>
    <name>ktr::ModuleLink</name>
    <message>
        <source>No module was heard at any serial port</source>
        <translation>An keinem seriellen Port hat sich ein Modul gemeldet</translation>
    </message>
    <message>
        <source>The module is in configuration mode</source>
        <translation>Das Modul ist im Konfigurationsmodus</translation>
    </message>
    <message>
        <source>The connection is lost: %1</source>
        <translation>Die Verbindung ist unterbrochen: %1</translation>
    </message>
    <message>
        <source>The line was closed</source>
        <translation>Die Leitung wurde geschlossen</translation>
    </message>
</context>
<context>
    <name>ktr::NamesWindow</name>
    <message>
        <source>Names of the inputs and outputs</source>
        <translation>Namen der Ein- und Ausgänge</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Shown behind each input and output. They are kept beside the file; no module is sent them.</source>
        <translation>Sie stehen hinter jedem Ein- und Ausgang. Aufbewahrt werden sie neben der Datei; kein Modul bekommt sie.</translation>
    </message>
</context>
<context>
    <name>ktr::NotificationCells</name>
    <message>
        <source>Received</source>
        <translation>Empfangen</translation>
    </message>
    <message>
        <source>Station</source>
        <translation>Station</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>State</source>
        <translation>Status</translation>
    </message>
    <message>
        <source>Count</source>
        <translation>Anzahl</translation>
    </message>
    <message>
        <source>Recipient</source>
        <translation>Empfänger</translation>
    </message>
    <message>
        <source>acknowledged %1</source>
        <translation>quittiert %1</translation>
    </message>
</context>
<context>
    <name>ktr::NotificationPage</name>
    <message>
        <source>This station</source>
        <translation>Diese Station</translation>
    </message>
    <message>
        <source>All stations</source>
        <translation>Alle Stationen</translation>
    </message>
    <message>
        <source>Filter</source>
        <translation>Filter</translation>
    </message>
    <message>
        <source>Acknowledges the selected notifications (Space or Enter in the list)</source>
        <translation>Quittiert die gewählten Meldungen (Leertaste oder Eingabetaste in der Liste)</translation>
    </message>
    <message>
        <source>%1 (all shown)</source>
        <translation>%1 (alle gezeigten)</translation>
    </message>
    <message>
        <source>Acknowledges all alarms that are listed</source>
        <translation>Quittiert alle angezeigten Alarme</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
    <message>
        <source>Listed: %1, %2: %3</source>
        <translation>Angezeigt: %1, %2: %3</translation>
    </message>
    <message>
        <source>Nothing fits the filter</source>
        <translation>Nichts passt zum Filter</translation>
    </message>
    <message>
        <source>No notifications</source>
        <translation>Keine Meldungen</translation>
    </message>
    <message>
        <source>Only not acknowledged</source>
        <translation>Nur nicht quittierte</translation>
    </message>
    <message>
        <source>Copies the selected rows, columns separated by tabs (Ctrl+C)</source>
        <translation>Kopiert die gewählten Zeilen, Spalten durch Tabulatoren getrennt (Strg+C)</translation>
    </message>
    <message>
        <source>Searched for in text, recipient and station</source>
        <translation>Wird in Text, Empfänger und Station gesucht</translation>
    </message>
    <message>
        <source>Remove entries...</source>
        <translation>Einträge entfernen...</translation>
    </message>
    <message>
        <source>Remove %L1 entries from the tree and its file? The record keeps them; what is not acknowledged stays.</source>
        <translation>%L1 Einträge aus dem Baum und seiner Datei entfernen? Die Aufzeichnung behält sie; was nicht quittiert ist, bleibt.</translation>
    </message>
    <message>
        <source>Choose a station to see its notifications.</source>
        <translation>Eine Station wählen, um ihre Meldungen zu sehen.</translation>
    </message>
</context>
<context>
    <name>ktr::OperationalMode</name>
    <message>
        <source>The program did not end properly last time</source>
        <translation>Das Programm wurde beim letzten Mal nicht ordentlich beendet</translation>
    </message>
    <message>
        <source>The list of stations cannot be used: %1</source>
        <translation>Die Liste der Stationen ist nicht zu gebrauchen: %1</translation>
    </message>
    <message>
        <source>Not all of the list of stations is as it was: %1</source>
        <translation>Nicht alles in der Liste der Stationen ist, wie es war: %1</translation>
    </message>
    <message>
        <source>What happens cannot be written to the record: %1</source>
        <translation>Was geschieht, kann nicht aufgezeichnet werden: %1</translation>
    </message>
    <message>
        <source>The disk with the record is nearly full</source>
        <translation>Der Datenträger mit der Aufzeichnung ist fast voll</translation>
    </message>
    <message>
        <source>The record cannot be opened yet, which is tried again all the time: %1</source>
        <translation>Die Aufzeichnung kann noch nicht geöffnet werden; das wird laufend wieder versucht: %1</translation>
    </message>
    <message>
        <source>The record can be asked for stations again</source>
        <translation>Die Aufzeichnung kann wieder nach Stationen gefragt werden</translation>
    </message>
    <message>
        <source>%1: the stations are shared by keepers</source>
        <translation>%1: die Stationen werden von Wächtern geteilt</translation>
    </message>
    <message>
        <source>The record cannot be reached</source>
        <translation>Die Aufzeichnung ist nicht erreichbar</translation>
    </message>
    <message>
        <source>Nobody watches the stations</source>
        <translation>Niemand überwacht die Stationen</translation>
    </message>
    <message>
        <source>The database lets this user look on only</source>
        <translation>Die Datenbank lässt diesen Benutzer nur zusehen</translation>
    </message>
    <message>
        <source>The database lets administrators do that only</source>
        <translation>Die Datenbank erlaubt das nur Administratoren</translation>
    </message>
    <message>
        <source>Done in the program that watches the stations</source>
        <translation>Geschieht in dem Programm, das die Stationen überwacht</translation>
    </message>
    <message>
        <source>What the server does not take can wait in memory alone: %1</source>
        <translation>Was der Server nicht annimmt, kann nur im Arbeitsspeicher warten: %1</translation>
    </message>
    <message>
        <source>The program that watches the stations removes them for good</source>
        <translation>Das Programm, das die Stationen überwacht, entfernt sie endgültig</translation>
    </message>
    <message>
        <source>The record cannot be opened yet</source>
        <translation>Die Aufzeichnung kann noch nicht geöffnet werden</translation>
    </message>
</context>
<context>
    <name>ktr::OperationalModeOpener</name>
    <message>
        <source>Where the stations are could not be kept for the next start</source>
        <translation>Wo die Stationen sind, konnte für den nächsten Start nicht gespeichert werden</translation>
    </message>
    <message>
        <source>Choose a folder</source>
        <translation>Ordner wählen</translation>
    </message>
    <message>
        <source>None: leave open what is</source>
        <translation>Keine: offen lassen, was offen ist</translation>
    </message>
    <message>
        <source>Several files have the station&apos;s identifier. Which one is to be opened?</source>
        <translation>Mehrere Dateien haben die Kennung der Station. Welche soll geöffnet werden?</translation>
    </message>
</context>
<context>
    <name>ktr::OperatorBar</name>
    <message>
        <source>No operator</source>
        <translation>Kein Bediener</translation>
    </message>
    <message>
        <source>Operator: %1</source>
        <translation>Bediener: %1</translation>
    </message>
    <message>
        <source>Nobody&apos;s name is kept with what is acknowledged and changed. Click to give one.</source>
        <translation>Zu dem, was quittiert und geändert wird, wird kein Name festgehalten. Klicken, um einen anzugeben.</translation>
    </message>
    <message>
        <source>Operator</source>
        <translation>Bediener</translation>
    </message>
    <message>
        <source>Take this name</source>
        <translation>Namen übernehmen</translation>
    </message>
    <message>
        <source>Without a name</source>
        <translation>Ohne Namen</translation>
    </message>
    <message>
        <source>Alarms can be acknowledged all the same; nobody&apos;s name is kept with it</source>
        <translation>Alarme lassen sich trotzdem quittieren; es wird kein Name festgehalten</translation>
    </message>
    <message>
        <source>Who is on duty?</source>
        <translation>Wer hat Dienst?</translation>
    </message>
    <message>
        <source>The name is kept with what is acknowledged and changed from now on</source>
        <translation>Der Name wird zu dem festgehalten, was von nun an quittiert und geändert wird</translation>
    </message>
    <message>
        <source>%1: the name that is kept with what is acknowledged and changed. Click for the next shift.</source>
        <translation>%1: der Name, der zu dem festgehalten wird, was quittiert und geändert wird. Klicken zum Schichtwechsel.</translation>
    </message>
</context>
<context>
    <name>ktr::OpmodeMenus</name>
    <message>
        <source>Add several...</source>
        <translation>Mehrere hinzufügen...</translation>
    </message>
    <message>
        <source>Rename</source>
        <translation>Umbenennen</translation>
    </message>
    <message>
        <source>Mute alarms</source>
        <translation>Alarme stumm schalten</translation>
    </message>
    <message>
        <source>Close the operational mode</source>
        <translation>Betriebsmodus schließen</translation>
    </message>
    <message>
        <source>Find in the record...</source>
        <translation>In der Aufzeichnung suchen...</translation>
    </message>
    <message>
        <source>Mute them for</source>
        <translation>Stumm für</translation>
    </message>
    <message>
        <source>15 minutes</source>
        <translation>15 Minuten</translation>
    </message>
    <message>
        <source>1 hour</source>
        <translation>1 Stunde</translation>
    </message>
    <message>
        <source>4 hours</source>
        <translation>4 Stunden</translation>
    </message>
    <message>
        <source>the rest of the shift (6, 14 or 22 o&apos;clock)</source>
        <translation>den Rest der Schicht (6, 14 oder 22 Uhr)</translation>
    </message>
    <message>
        <source>Record: size, age, copy...</source>
        <translation>Aufzeichnung: Größe, Alter, Kopie...</translation>
    </message>
    <message>
        <source>Maintenance...</source>
        <translation>Wartung...</translation>
    </message>
    <message>
        <source>End the maintenance</source>
        <translation>Wartung beenden</translation>
    </message>
    <message>
        <source>Alarms</source>
        <translation>Alarme</translation>
    </message>
    <message>
        <source>Operator...</source>
        <translation>Bediener...</translation>
    </message>
    <message>
        <source>Alarm rules...</source>
        <translation>Alarmregeln...</translation>
    </message>
    <message>
        <source>Chattering and silence...</source>
        <translation>Flattern und Schweigen...</translation>
    </message>
    <message>
        <source>Where the stations are...</source>
        <translation>Wo die Stationen sind...</translation>
    </message>
    <message>
        <source>Transmit to several...</source>
        <translation>An mehrere übertragen...</translation>
    </message>
    <message>
        <source>Overview of the stations</source>
        <translation>Übersicht der Stationen</translation>
    </message>
    <message>
        <source>Overview on the whole screen</source>
        <translation>Übersicht auf dem ganzen Bildschirm</translation>
    </message>
    <message>
        <source>Curves of several stations</source>
        <translation>Kurven mehrerer Stationen</translation>
    </message>
    <message>
        <source>Add to the curves</source>
        <translation>Zu den Kurven hinzufügen</translation>
    </message>
    <message>
        <source>Undo the removal</source>
        <translation>Entfernen rückgängig</translation>
    </message>
    <message>
        <source>Ask for the input values</source>
        <translation>Eingangswerte anfordern</translation>
    </message>
    <message>
        <source>Sound...</source>
        <translation>Ton...</translation>
    </message>
    <message>
        <source>Map of time...</source>
        <translation>Zeitkarte...</translation>
    </message>
    <message>
        <source>Link configuration file...</source>
        <translation>Konfigurationsdatei verknüpfen...</translation>
    </message>
    <message>
        <source>Unlink configuration file</source>
        <translation>Konfigurationsdatei lösen</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Hilfe</translation>
    </message>
    <message>
        <source>Pages</source>
        <translation>Seiten</translation>
    </message>
</context>
<context>
    <name>ktr::OpmodePage</name>
    <message>
        <source>Entries removed: %L1</source>
        <translation>Entfernte Einträge: %L1</translation>
    </message>
</context>
<context>
    <name>ktr::OpmodePages</name>
    <message>
        <source>Alarms</source>
        <translation>Alarme</translation>
    </message>
    <message>
        <source>Curves</source>
        <translation>Kurven</translation>
    </message>
</context>
<context>
    <name>ktr::OverviewOptions</name>
    <message>
        <source>Options</source>
        <translation>Optionen</translation>
    </message>
    <message>
        <source>Groups...</source>
        <translation>Gruppen...</translation>
    </message>
    <message>
        <source>Values shown (up to %1)</source>
        <translation>Gezeigte Werte (bis zu %1)</translation>
    </message>
    <message>
        <source>Those with names</source>
        <translation>Die mit Namen</translation>
    </message>
    <message>
        <source>Values shown in %1 (up to %2)</source>
        <translation>Angezeigte Werte in %1 (bis zu %2)</translation>
    </message>
    <message>
        <source>As in all groups</source>
        <translation>Wie in allen Gruppen</translation>
    </message>
</context>
<context>
    <name>ktr::OverviewPage</name>
    <message>
        <source>Stations: %L1</source>
        <translation>Stationen: %L1</translation>
    </message>
    <message>
        <source>, shown %L1</source>
        <translation>, gezeigt %L1</translation>
    </message>
    <message>
        <source>, in alarm %L1</source>
        <translation>, in Alarm %L1</translation>
    </message>
    <message>
        <source>, silent %L1</source>
        <translation>, stumm %L1</translation>
    </message>
    <message>
        <source>, acknowledged %L1</source>
        <translation>, quittiert %L1</translation>
    </message>
    <message>
        <source>, not watched %L1</source>
        <translation>, nicht überwacht %L1</translation>
    </message>
    <message>
        <source>Find a station</source>
        <translation>Station suchen</translation>
    </message>
    <message>
        <source>The most urgent first</source>
        <translation>Das Dringendste zuerst</translation>
    </message>
    <message>
        <source>By name</source>
        <translation>Nach Namen</translation>
    </message>
    <message>
        <source>Order of the stations</source>
        <translation>Reihenfolge der Stationen</translation>
    </message>
    <message>
        <source>Fit</source>
        <translation>Einpassen</translation>
    </message>
    <message>
        <source>Tiles as large as the number of stations allows (Ctrl+0)</source>
        <translation>Kacheln so groß, wie es die Zahl der Stationen erlaubt (Strg+0)</translation>
    </message>
    <message>
        <source>Smaller tiles (Ctrl+-)</source>
        <translation>Kleinere Kacheln (Strg+-)</translation>
    </message>
    <message>
        <source>Larger tiles (Ctrl++)</source>
        <translation>Größere Kacheln (Strg++)</translation>
    </message>
    <message>
        <source>Smaller tiles</source>
        <translation>Kleinere Kacheln</translation>
    </message>
    <message>
        <source>Larger tiles</source>
        <translation>Größere Kacheln</translation>
    </message>
    <message>
        <source>Overview of the stations</source>
        <translation>Übersicht der Stationen</translation>
    </message>
    <message>
        <source>No station has this in its name.</source>
        <translation>Keine Station hat das in ihrem Namen.</translation>
    </message>
    <message>
        <source>Group of stations</source>
        <translation>Gruppe von Stationen</translation>
    </message>
    <message>
        <source>All groups</source>
        <translation>Alle Gruppen</translation>
    </message>
    <message>
        <source>In no group</source>
        <translation>In keiner Gruppe</translation>
    </message>
    <message>
        <source>By group</source>
        <translation>Nach Gruppe</translation>
    </message>
</context>
<context>
    <name>ktr::PageBuilder</name>
    <message>
        <source>Saved: %1</source>
        <translation>Gespeichert: %1</translation>
    </message>
    <message>
        <source>There is no file %1</source>
        <translation>Die Datei %1 gibt es nicht</translation>
    </message>
    <message>
        <source>%1 cannot be opened</source>
        <translation>%1 lässt sich nicht öffnen</translation>
    </message>
</context>
<context>
    <name>ktr::PageTabs</name>
    <message>
        <source>Next page</source>
        <translation>Nächste Seite</translation>
    </message>
    <message>
        <source>Previous page</source>
        <translation>Vorige Seite</translation>
    </message>
</context>
<context>
    <name>ktr::PaneKeys</name>
    <message>
        <source>Next part of the window</source>
        <translation>Nächster Teil des Fensters</translation>
    </message>
    <message>
        <source>Previous part of the window</source>
        <translation>Voriger Teil des Fensters</translation>
    </message>
</context>
<context>
    <name>ktr::PlaceDialog</name>
    <message>
        <source>In the list of this computer, which watches them itself</source>
        <translation>In der Liste dieses Rechners, der sie selbst überwacht</translation>
    </message>
    <message>
        <source>In a record on a database server, for which keepers watch them:</source>
        <translation>In einer Aufzeichnung auf einem Datenbankserver, für die Wächter sie überwachen:</translation>
    </message>
    <message>
        <source>Where the stations are</source>
        <translation>Wo die Stationen sind</translation>
    </message>
    <message>
        <source>It was given on the command line, or by the variable KTR_RECORD.</source>
        <translation>Es wurde in der Befehlszeile oder mit der Variablen KTR_RECORD angegeben.</translation>
    </message>
    <message>
        <source>The password stands in PostgreSQL&apos;s password file (~/.pgpass), not here.</source>
        <translation>Das Kennwort steht in der Kennwortdatei von PostgreSQL (~/.pgpass), nicht hier.</translation>
    </message>
</context>
<context>
    <name>ktr::PlayEventModel</name>
    <message>
        <source>Time</source>
        <translation>Zeit</translation>
    </message>
    <message>
        <source>What</source>
        <translation>Was</translation>
    </message>
    <message>
        <source>To</source>
        <translation>An</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>Cause</source>
        <translation>Ursache</translation>
    </message>
    <message>
        <source>Rests on</source>
        <translation>Beruht auf</translation>
    </message>
</context>
<context>
    <name>ktr::ProblemPanel</name>
    <message>
        <source>No problems</source>
        <translation>Keine Probleme</translation>
    </message>
    <message>
        <source>Problems: %1</source>
        <translation>Probleme: %1</translation>
    </message>
    <message>
        <source>Problems</source>
        <translation>Probleme</translation>
    </message>
    <message>
        <source>What the file or the module cannot take as it is, has no effect or is dangerous; a click on a row goes to its field</source>
        <translation>Was Datei oder Modul so nicht aufnehmen können, was wirkungslos oder gefährlich ist; ein Klick auf eine Zeile führt zum Feld</translation>
    </message>
</context>
<context>
    <name>ktr::ProgramEnd</name>
    <message>
        <source>Firmware is being sent to the module. Closing ends that: the module then has a part of it only and may not work until it gets all of it. Close nevertheless?</source>
        <translation>Es wird Firmware an das Modul gesendet. Das Schließen beendet das: Das Modul hat dann nur einen Teil davon und arbeitet möglicherweise nicht, bis es sie ganz bekommt. Trotzdem schließen?</translation>
    </message>
    <message>
        <source>A configuration is being transmitted. Closing ends that: the module then holds a part of it only. Close nevertheless?</source>
        <translation>Es wird eine Konfiguration übertragen. Das Schließen beendet das: Das Modul enthält dann nur einen Teil davon. Trotzdem schließen?</translation>
    </message>
</context>
<context>
    <name>ktr::ProgramStart</name>
    <message>
        <source>The settings could not be read; they are kept under another name beside the new ones</source>
        <translation>Die Einstellungen waren nicht lesbar; sie bleiben unter anderem Namen neben den neuen erhalten</translation>
    </message>
    <message>
        <source>The settings cannot be written; what is chosen holds for this run</source>
        <translation>Die Einstellungen sind nicht schreibbar; was gewählt wird, gilt für diesen Lauf</translation>
    </message>
    <message>
        <source>Other KTRconfig windows may not be noticed: %1</source>
        <translation>Andere KTRconfig-Fenster werden womöglich nicht bemerkt: %1</translation>
    </message>
    <message>
        <source>The KTRconfig that is open already goes on; this one ends.</source>
        <translation>Das schon geöffnete KTRconfig läuft weiter; dieses endet.</translation>
    </message>
    <message>
        <source>Not done: %1</source>
        <translation>Nicht getan: %1</translation>
    </message>
    <message>
        <source>The KTRconfig that was open already was closed; this one takes its place.</source>
        <translation>Das schon geöffnete KTRconfig wurde geschlossen; dieses tritt an seine Stelle.</translation>
    </message>
    <message>
        <source>There are no texts of the language &quot;%1&quot;</source>
        <translation>Es gibt keine Texte der Sprache „%1“</translation>
    </message>
</context>
<context>
    <name>ktr::QualityBars</name>
    <message>
        <source>Signal: %1</source>
        <translation>Signal: %1</translation>
    </message>
    <message>
        <source>not known</source>
        <translation>nicht bekannt</translation>
    </message>
</context>
<context>
    <name>ktr::RangeBar</name>
    <message>
        <source>Hour</source>
        <translation>Stunde</translation>
    </message>
    <message>
        <source>Day</source>
        <translation>Tag</translation>
    </message>
    <message>
        <source>Week</source>
        <translation>Woche</translation>
    </message>
    <message>
        <source>Month</source>
        <translation>Monat</translation>
    </message>
    <message>
        <source>Year</source>
        <translation>Jahr</translation>
    </message>
    <message>
        <source>From – to</source>
        <translation>Von – bis</translation>
    </message>
    <message>
        <source>How long a time is shown</source>
        <translation>Wie lange Zeit gezeigt wird</translation>
    </message>
    <message>
        <source>Back by the time that is shown (Page Up)</source>
        <translation>Um die gezeigte Zeit zurück (Bild auf)</translation>
    </message>
    <message>
        <source>Forward by the time that is shown (Page Down)</source>
        <translation>Um die gezeigte Zeit vor (Bild ab)</translation>
    </message>
    <message>
        <source>Now</source>
        <translation>Jetzt</translation>
    </message>
    <message>
        <source>Shows the time up to now, and follows it (Home)</source>
        <translation>Zeigt die Zeit bis jetzt und folgt ihr (Pos1)</translation>
    </message>
    <message>
        <source>From</source>
        <translation>Von</translation>
    </message>
    <message>
        <source>The begin of the time that is shown; its length stays</source>
        <translation>Der Beginn der gezeigten Zeit; ihre Länge bleibt</translation>
    </message>
    <message>
        <source>To</source>
        <translation>Bis</translation>
    </message>
    <message>
        <source>The end of the time that is shown</source>
        <translation>Das Ende der gezeigten Zeit</translation>
    </message>
</context>
<context>
    <name>ktr::RecordWindow</name>
    <message>
        <source>Record</source>
        <translation>Aufzeichnung</translation>
    </message>
    <message>
        <source>Find</source>
        <translation>Suchen</translation>
    </message>
    <message>
        <source>Shift report</source>
        <translation>Schichtbericht</translation>
    </message>
    <message>
        <source>Figures</source>
        <translation>Kennzahlen</translation>
    </message>
    <message>
        <source>Easily overlooked</source>
        <translation>Leicht übersehen</translation>
    </message>
    <message>
        <source>Map of time</source>
        <translation>Zeitkarte</translation>
    </message>
</context>
<context>
    <name>ktr::ReplyHandler</name>
    <message>
        <source>A version reply that lacks fields: %1</source>
        <translation>Einer Versionsantwort fehlen Felder: %1</translation>
    </message>
    <message>
        <source>Lines of the archive that no fast export asked for are not exported</source>
        <translation>Archivzeilen, die kein schneller Export angefordert hat, werden nicht exportiert</translation>
    </message>
</context>
<context>
    <name>ktr::ReportPage</name>
    <message>
        <source>The last 8 hours</source>
        <translation>Die letzten 8 Stunden</translation>
    </message>
    <message>
        <source>Since the last change of operators</source>
        <translation>Seit dem letzten Wechsel der Bediener</translation>
    </message>
    <message>
        <source>The last 24 hours</source>
        <translation>Die letzten 24 Stunden</translation>
    </message>
    <message>
        <source>The last 7 days</source>
        <translation>Die letzten 7 Tage</translation>
    </message>
    <message>
        <source>From ... to ...</source>
        <translation>Von ... bis ...</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Zeit</translation>
    </message>
    <message>
        <source>Where no other operator did anything yet, the last 8 hours are taken</source>
        <translation>Wo noch kein anderer Bediener etwas getan hat, gelten die letzten 8 Stunden</translation>
    </message>
    <message>
        <source>From</source>
        <translation>Von</translation>
    </message>
    <message>
        <source>To</source>
        <translation>Bis</translation>
    </message>
    <message>
        <source>Operators at work</source>
        <translation>Bediener im Dienst</translation>
    </message>
    <message>
        <source>Refresh</source>
        <translation>Aktualisieren</translation>
    </message>
    <message>
        <source>PDF...</source>
        <translation>PDF...</translation>
    </message>
    <message>
        <source>CSV...</source>
        <translation>CSV...</translation>
    </message>
    <message>
        <source>Report</source>
        <translation>Bericht</translation>
    </message>
    <message>
        <source>The first time is later than the second</source>
        <translation>Der Beginn liegt nach dem Ende</translation>
    </message>
    <message>
        <source>Searching …</source>
        <translation>Suche läuft …</translation>
    </message>
    <message>
        <source>PDF document</source>
        <translation>PDF-Dokument</translation>
    </message>
    <message>
        <source>CSV table</source>
        <translation>CSV-Tabelle</translation>
    </message>
    <message>
        <source>Writing …</source>
        <translation>Wird geschrieben …</translation>
    </message>
    <message>
        <source>Written: %1</source>
        <translation>Geschrieben: %1</translation>
    </message>
</context>
<context>
    <name>ktr::ReportWindow</name>
    <message>
        <source>Report a problem</source>
        <translation>Problem melden</translation>
    </message>
    <message>
        <source>This is what helps to find the cause. PINs, PUKs, passwords and phone numbers are masked. Read it and take out what is to stay with you; nothing is sent by itself.</source>
        <translation>Das hilft, die Ursache zu finden. PINs, PUKs, Kennwörter und Telefonnummern sind unkenntlich gemacht. Lesen Sie es und nehmen Sie heraus, was bei Ihnen bleiben soll; von selbst wird nichts gesendet.</translation>
    </message>
    <message>
        <source>What did you do, what did you expect, what happened instead?</source>
        <translation>Was haben Sie getan, was erwartet, und was ist stattdessen geschehen?</translation>
    </message>
    <message>
        <source>What happened</source>
        <translation>Was geschehen ist</translation>
    </message>
    <message>
        <source>What is saved</source>
        <translation>Was gespeichert wird</translation>
    </message>
    <message>
        <source>Save...</source>
        <translation>Speichern...</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Report</source>
        <translation>Bericht</translation>
    </message>
    <message>
        <source>Saved: %1</source>
        <translation>Gespeichert: %1</translation>
    </message>
    <message>
        <source>Copied</source>
        <translation>Kopiert</translation>
    </message>
</context>
<context>
    <name>ktr::RequestSender</name>
    <message>
        <source>the program that watches the stations did not answer</source>
        <translation>das Programm, das die Stationen überwacht, hat nicht geantwortet</translation>
    </message>
    <message>
        <source>Not done: %1</source>
        <translation>Nicht ausgeführt: %1</translation>
    </message>
</context>
<context>
    <name>ktr::RetentionDialog</name>
    <message>
        <source>Back up...</source>
        <translation>Sichern...</translation>
    </message>
    <message>
        <source>What is kept</source>
        <translation>Was aufbewahrt wird</translation>
    </message>
    <message>
        <source>for ever</source>
        <translation>für immer</translation>
    </message>
    <message>
        <source> days</source>
        <translation> Tage</translation>
    </message>
    <message>
        <source>Entries in the tree and its file (the record keeps them):</source>
        <translation>Einträge im Baum und in seiner Datei (die Aufzeichnung behält sie):</translation>
    </message>
    <message>
        <source>Events in the record:</source>
        <translation>Ereignisse in der Aufzeichnung:</translation>
    </message>
    <message>
        <source>Alarms that are acknowledged and over:</source>
        <translation>Alarme, die quittiert und vorüber sind:</translation>
    </message>
    <message>
        <source>Archives of the modules:</source>
        <translation>Archive der Module:</translation>
    </message>
    <message>
        <source>Input values:</source>
        <translation>Eingangswerte:</translation>
    </message>
    <message>
        <source>Copies the record while it is in use; the copy may take its place</source>
        <translation>Kopiert die Aufzeichnung, während sie benutzt wird; die Kopie kann an ihre Stelle treten</translation>
    </message>
    <message>
        <source>Nothing is recorded.</source>
        <translation>Nichts wird aufgezeichnet.</translation>
    </message>
    <message>
        <source>The record is looked at...</source>
        <translation>Die Aufzeichnung wird durchgesehen...</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>Free on this disk: %1 of %2</source>
        <translation>Frei auf diesem Datenträger: %1 von %2</translation>
    </message>
    <message>
        <source>The tree has %1 entries. Kept for %2 days, it would have %3 less.</source>
        <translation>Der Baum hat %1 Einträge. Bei %2 Tagen Aufbewahrung wären es %3 weniger.</translation>
    </message>
    <message>
        <source>Records|*.sqlite</source>
        <translation>Aufzeichnungen|*.sqlite</translation>
    </message>
    <message>
        <source>The copy is being written...</source>
        <translation>Die Kopie wird geschrieben...</translation>
    </message>
    <message>
        <source>The copy is written: %1</source>
        <translation>Die Kopie ist geschrieben: %1</translation>
    </message>
    <message>
        <source>Events: %1, records of archives: %2, input values: %3.</source>
        <translation>Ereignisse: %1, Archivsätze: %2, Eingangswerte: %3.</translation>
    </message>
    <message>
        <source>That is since %1, for less than a day.</source>
        <translation>Das ist seit %1, seit weniger als einem Tag.</translation>
    </message>
    <message>
        <source>About %1 rows and %2 a day.</source>
        <translation>Etwa %1 Zeilen und %2 am Tag.</translation>
    </message>
    <message>
        <source>A record on a server is copied by the server&apos;s own means (pg_dump)</source>
        <translation>Eine Aufzeichnung auf einem Server wird mit dessen eigenen Mitteln kopiert (pg_dump)</translation>
    </message>
    <message>
        <source>What is older is removed from the record for good:</source>
        <translation>Was älter ist, wird aus der Aufzeichnung endgültig entfernt:</translation>
    </message>
    <message>
        <source>It cannot be undone. &quot;Back up...&quot; makes a copy before.</source>
        <translation>Das lässt sich nicht rückgängig machen. „Sichern...“ macht vorher eine Kopie.</translation>
    </message>
</context>
<context>
    <name>ktr::ScalingHelper</name>
    <message>
        <source>Scaling by two points</source>
        <translation>Skalierung aus zwei Punkten</translation>
    </message>
    <message>
        <source>Channel</source>
        <translation>Kanal</translation>
    </message>
    <message>
        <source>Signal</source>
        <translation>Signal</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Wert</translation>
    </message>
    <message>
        <source>Point %1</source>
        <translation>Punkt %1</translation>
    </message>
    <message>
        <source>value = offset + factor × signal</source>
        <translation>Wert = Offset + Faktor × Signal</translation>
    </message>
    <message>
        <source>Take over</source>
        <translation>Übernehmen</translation>
    </message>
    <message>
        <source>The two signals must differ</source>
        <translation>Die beiden Signale müssen verschieden sein</translation>
    </message>
    <message>
        <source>Four numbers are needed</source>
        <translation>Es werden vier Zahlen gebraucht</translation>
    </message>
    <message>
        <source>Offset %1, factor %2</source>
        <translation>Offset %1, Faktor %2</translation>
    </message>
</context>
<context>
    <name>ktr::SeriesChooser</name>
    <message>
        <source>Find a station or an input</source>
        <translation>Station oder Eingang suchen</translation>
    </message>
    <message>
        <source>Inputs to draw</source>
        <translation>Zu zeichnende Eingänge</translation>
    </message>
    <message>
        <source>It has not sent any values yet.</source>
        <translation>Sie hat noch keine Werte gesendet.</translation>
    </message>
    <message>
        <source>Down goes into the list; Enter chooses the only input that is found</source>
        <translation>Pfeil ab führt in die Liste; die Eingabetaste wählt den einzigen gefundenen Eingang</translation>
    </message>
    <message>
        <source>Open a station to see its inputs with values; the space bar or Enter chooses</source>
        <translation>Eine Station aufklappen, um ihre Eingänge mit Werten zu sehen; Leertaste oder Eingabetaste wählt</translation>
    </message>
    <message>
        <source>No station and no input with values is called so.</source>
        <translation>Keine Station und kein Eingang mit Werten heißt so.</translation>
    </message>
</context>
<context>
    <name>ktr::ServiceTasks</name>
    <message>
        <source>not known to the module</source>
        <translation>dem Modul nicht bekannt</translation>
    </message>
    <message>
        <source>%1 dBm (%2 of 31)</source>
        <translation>%1 dBm (%2 von 31)</translation>
    </message>
    <message>
        <source>First tasks at the module</source>
        <translation>Erste Aufgaben am Modul</translation>
    </message>
    <message>
        <source>Set the clock</source>
        <translation>Uhr stellen</translation>
    </message>
    <message>
        <source>Sets the module&apos;s clock by this computer&apos;s</source>
        <translation>Stellt die Uhr des Moduls nach der dieses Rechners</translation>
    </message>
    <message>
        <source>Read the version</source>
        <translation>Version lesen</translation>
    </message>
    <message>
        <source>Sends %1</source>
        <translation>Sendet %1</translation>
    </message>
    <message>
        <source>Check the signal</source>
        <translation>Signal prüfen</translation>
    </message>
    <message>
        <source>is sent next</source>
        <translation>wird als Nächstes gesendet</translation>
    </message>
    <message>
        <source>waits until the module reads an SMS</source>
        <translation>wartet, bis das Modul eine SMS liest</translation>
    </message>
    <message>
        <source>handed over, not answered yet</source>
        <translation>übergeben, noch nicht beantwortet</translation>
    </message>
    <message>
        <source>done</source>
        <translation>erledigt</translation>
    </message>
    <message>
        <source>the module says: %1</source>
        <translation>das Modul sagt: %1</translation>
    </message>
    <message>
        <source>not sent</source>
        <translation>nicht gesendet</translation>
    </message>
    <message>
        <source>application %1, configuration %2</source>
        <translation>Applikation %1, Konfiguration %2</translation>
    </message>
    <message>
        <source>Sends nothing and waits for the module&apos;s own report: one that keeps its GSM connection tells its signal by itself</source>
        <translation>Sendet nichts und wartet auf die eigene Meldung des Moduls: Eines, das seine GSM-Verbindung hält, nennt sein Signal von selbst</translation>
    </message>
    <message>
        <source>waits for the module&apos;s own report; nothing is sent</source>
        <translation>wartet auf die eigene Meldung des Moduls; gesendet wird nichts</translation>
    </message>
</context>
<context>
    <name>ktr::SharedList</name>
    <message>
        <source>The database is away for too long: modules that still talk to this keeper are answered, none is asked</source>
        <translation>Die Datenbank ist zu lange weg: Module, die noch mit diesem Wächter sprechen, erhalten Antwort, keines wird gefragt</translation>
    </message>
</context>
<context>
    <name>ktr::ShelveDialog</name>
    <message>
        <source>Station in maintenance</source>
        <translation>Station in Wartung</translation>
    </message>
    <message>
        <source>Shelve alarms</source>
        <translation>Alarme zurückstellen</translation>
    </message>
    <message>
        <source>These alarms (%L1), also when they come again</source>
        <translation>Diese Alarme (%L1), auch wenn sie wiederkommen</translation>
    </message>
    <message>
        <source>Maintenance: all alarms of their stations (%L1)</source>
        <translation>Wartung: alle Alarme ihrer Stationen (%L1)</translation>
    </message>
    <message>
        <source>for 1 hour</source>
        <translation>für 1 Stunde</translation>
    </message>
    <message>
        <source>for 8 hours</source>
        <translation>für 8 Stunden</translation>
    </message>
    <message>
        <source>for 24 hours</source>
        <translation>für 24 Stunden</translation>
    </message>
    <message>
        <source>until ...</source>
        <translation>bis ...</translation>
    </message>
    <message>
        <source>How long</source>
        <translation>Wie lange</translation>
    </message>
    <message>
        <source>until</source>
        <translation>bis</translation>
    </message>
    <message>
        <source>Reason</source>
        <translation>Grund</translation>
    </message>
    <message>
        <source>This time is over already</source>
        <translation>Diese Zeit ist schon vorbei</translation>
    </message>
    <message>
        <source>A reason is needed</source>
        <translation>Ein Grund ist nötig</translation>
    </message>
</context>
<context>
    <name>ktr::SingleInstance</name>
    <message>
        <source>there is no folder that is the user&apos;s alone</source>
        <translation>es gibt keinen Ordner, der dem Benutzer allein gehört</translation>
    </message>
</context>
<context>
    <name>ktr::SoundDialog</name>
    <message>
        <source>Sound of alarms</source>
        <translation>Ton der Alarme</translation>
    </message>
    <message>
        <source>Volume</source>
        <translation>Lautstärke</translation>
    </message>
    <message>
        <source>Test</source>
        <translation>Probe</translation>
    </message>
    <message>
        <source>The sound that is tested is heard although alarms may be muted.</source>
        <translation>Der Probeton ist zu hören, auch wenn Alarme stumm geschaltet sind.</translation>
    </message>
    <message>
        <source>Alarms cannot be heard: %1</source>
        <translation>Alarme sind nicht zu hören: %1</translation>
    </message>
    <message>
        <source>Of the alarms alone; the system has a volume of its own. For silence there is the mute, which ends by itself.</source>
        <translation>Nur die der Alarme; das System hat eine eigene Lautstärke. Für Stille gibt es das Stummschalten, das von selbst endet.</translation>
    </message>
    <message>
        <source>High</source>
        <translation>Hoch</translation>
    </message>
    <message>
        <source>Three high tones</source>
        <translation>Drei hohe Töne</translation>
    </message>
    <message>
        <source>Medium</source>
        <translation>Mittel</translation>
    </message>
    <message>
        <source>Two tones</source>
        <translation>Zwei Töne</translation>
    </message>
    <message>
        <source>Low</source>
        <translation>Niedrig</translation>
    </message>
    <message>
        <source>One low tone</source>
        <translation>Ein tiefer Ton</translation>
    </message>
    <message>
        <source>Being played: %1</source>
        <translation>Wird gespielt: %1</translation>
    </message>
    <message>
        <source>%1 was played at %2 % by %3. Where nothing was heard, look at the loudspeaker and the system&apos;s volume.</source>
        <translation>%1 wurde mit %2 % von %3 gespielt. War nichts zu hören, sind Lautsprecher und Lautstärke des Systems zu prüfen.</translation>
    </message>
    <message>
        <source>In place of the tones there is the system&apos;s beep, the same for all, where the system has one.</source>
        <translation>Anstelle der Töne kommt der Signalton des Systems, für alle derselbe, sofern das System einen hat.</translation>
    </message>
    <message>
        <source>%1 could not be played: %2</source>
        <translation>%1 konnte nicht gespielt werden: %2</translation>
    </message>
    <message>
        <source>%1 %</source>
        <translation>%1 %</translation>
    </message>
</context>
<context>
    <name>ktr::SoundNotice</name>
    <message>
        <source>No sound</source>
        <translation>Kein Ton</translation>
    </message>
    <message>
        <source>Alarms cannot be heard: %1. It is tried again each minute.</source>
        <translation>Alarme sind nicht zu hören: %1. Jede Minute wird es erneut versucht.</translation>
    </message>
    <message>
        <source>Alarms cannot be heard</source>
        <translation>Alarme sind nicht zu hören</translation>
    </message>
</context>
<context>
    <name>ktr::StationCommands</name>
    <message>
        <source>%1: that goes on</source>
        <translation>%1: das läuft noch</translation>
    </message>
    <message>
        <source>%1 and %L2 more</source>
        <translation>%1 und %L2 weitere</translation>
    </message>
    <message>
        <source>Delete the station &quot;%1&quot; with its notifications, its history and its values?</source>
        <translation>Die Station „%1“ mit ihren Meldungen, ihrer Historie und ihren Werten löschen?</translation>
    </message>
    <message>
        <source>The station &quot;%1&quot; is deleted where the stations are watched</source>
        <translation>Die Station „%1“ wird dort gelöscht, wo die Stationen überwacht werden</translation>
    </message>
    <message>
        <source>The station &quot;%1&quot; was deleted</source>
        <translation>Die Station „%1“ wurde gelöscht</translation>
    </message>
    <message>
        <source>Delete %L1 stations with their notifications, their history and their values?</source>
        <translation>%L1 Stationen mit ihren Meldungen, ihrer Historie und ihren Werten löschen?</translation>
    </message>
    <message>
        <source>Removing</source>
        <translation>Entfernen:</translation>
    </message>
    <message>
        <source>Stations that are removed where they are watched: %L1</source>
        <translation>Stationen, die dort entfernt werden, wo sie überwacht werden: %L1</translation>
    </message>
    <message>
        <source>Stations removed: %L1</source>
        <translation>Entfernte Stationen: %L1</translation>
    </message>
    <message>
        <source>Bringing back</source>
        <translation>Zurückholen:</translation>
    </message>
    <message>
        <source>%1: another station has this name now</source>
        <translation>%1: So heißt jetzt eine andere Station</translation>
    </message>
    <message>
        <source>Stations brought back: %L1</source>
        <translation>Zurückgeholte Stationen: %L1</translation>
    </message>
    <message>
        <source>Put %L1 stations offline? Their alarms do not arrive until they are online again.</source>
        <translation>%L1 Stationen offline schalten? Ihre Alarme kommen nicht an, bis sie wieder online sind.</translation>
    </message>
    <message>
        <source>Putting online</source>
        <translation>Online schalten:</translation>
    </message>
    <message>
        <source>Putting offline</source>
        <translation>Offline schalten:</translation>
    </message>
    <message>
        <source>%1: no longer there</source>
        <translation>%1: nicht mehr vorhanden</translation>
    </message>
    <message>
        <source>%1: it has no address yet</source>
        <translation>%1: hat noch keine Adresse</translation>
    </message>
    <message>
        <source>Stations put online: %L1</source>
        <translation>Online geschaltete Stationen: %L1</translation>
    </message>
    <message>
        <source>Stations put offline: %L1</source>
        <translation>Offline geschaltete Stationen: %L1</translation>
    </message>
    <message>
        <source>Stations in exclusive mode: %L1</source>
        <translation>Stationen im Exklusivmodus: %L1</translation>
    </message>
    <message>
        <source>Stations no longer in exclusive mode: %L1</source>
        <translation>Stationen nicht mehr im Exklusivmodus: %L1</translation>
    </message>
    <message>
        <source>Asking for values</source>
        <translation>Werte anfordern:</translation>
    </message>
    <message>
        <source>%1: it is offline</source>
        <translation>%1: ist offline</translation>
    </message>
    <message>
        <source>%1: it has a text to deliver already</source>
        <translation>%1: hat schon einen Text zuzustellen</translation>
    </message>
    <message>
        <source>Stations that are asked for their values: %L1</source>
        <translation>Stationen, deren Werte angefordert werden: %L1</translation>
    </message>
    <message>
        <source>Ctrl+Z brings back what was deleted, until stations are deleted the next time or the operational mode is closed.</source>
        <translation>Strg+Z holt das Gelöschte zurück, bis das nächste Mal Stationen gelöscht werden oder der Betriebsmodus geschlossen wird.</translation>
    </message>
    <message>
        <source>It cannot be undone: %1.</source>
        <translation>Es lässt sich nicht rückgängig machen: %1.</translation>
    </message>
    <message>
        <source>No station is online</source>
        <translation>Keine Station ist online</translation>
    </message>
    <message>
        <source>Put all stations offline? Online now: %L1. Their alarms do not arrive until they are online again.</source>
        <translation>Alle Stationen offline schalten? Jetzt online: %L1. Ihre Alarme kommen nicht an, bis sie wieder online sind.</translation>
    </message>
    <message>
        <source>Put %L1 stations into exclusive mode? They neither send nor receive by GSM then: their alarms arrive here alone, and on no telephone.</source>
        <translation>%L1 Stationen in den Exklusivmodus schalten? Sie senden und empfangen dann nicht über GSM: Ihre Alarme kommen nur hier an und auf keinem Telefon.</translation>
    </message>
    <message>
        <source>Alarms that are open and will be closed: %L1.</source>
        <translation>Offene Alarme, die damit geschlossen werden: %L1.</translation>
    </message>
</context>
<context>
    <name>ktr::StationConfigurations</name>
    <message>
        <source>a file whose name has a line break cannot be linked</source>
        <translation>eine Datei, in deren Name ein Zeilenumbruch steht, kann nicht verknüpft werden</translation>
    </message>
    <message>
        <source>it is no configuration that can be read</source>
        <translation>es ist keine lesbare Konfiguration</translation>
    </message>
    <message>
        <source>the file is not there</source>
        <translation>die Datei ist nicht da</translation>
    </message>
</context>
<context>
    <name>ktr::StationCounts</name>
    <message>
        <source>Stations: %1, alive %2, silent %3, offline %4</source>
        <translation>Stationen: %1, aktiv %2, stumm %3, offline %4</translation>
    </message>
    <message>
        <source>, not heard yet %1</source>
        <translation>, noch nicht gehört %1</translation>
    </message>
    <message>
        <source>shown %1</source>
        <translation>angezeigt %1</translation>
    </message>
    <message>
        <source>Datagrams of strangers, not looked at: %1</source>
        <translation>Datagramme von Fremden, nicht beachtet: %1</translation>
    </message>
</context>
<context>
    <name>ktr::StationFiguresModel</name>
    <message>
        <source>%1, %2</source>
        <translation>%1, %2</translation>
    </message>
    <message>
        <source>all the time</source>
        <translation>die ganze Zeit</translation>
    </message>
    <message>
        <source>%1, offline</source>
        <translation>%1, offline</translation>
    </message>
    <message>
        <source>(no station)</source>
        <translation>(keine Station)</translation>
    </message>
    <message>
        <source>Station</source>
        <translation>Station</translation>
    </message>
    <message>
        <source>Alarms</source>
        <translation>Alarme</translation>
    </message>
    <message>
        <source>Not heard</source>
        <translation>Nicht gehört</translation>
    </message>
    <message>
        <source>heard</source>
        <translation>gehört</translation>
    </message>
    <message>
        <source>offline since %1</source>
        <translation>offline seit %1</translation>
    </message>
    <message>
        <source>silent since %1</source>
        <translation>stumm seit %1</translation>
    </message>
    <message>
        <source>Now</source>
        <translation>Jetzt</translation>
    </message>
</context>
<context>
    <name>ktr::StationFilter</name>
    <message>
        <source>All</source>
        <translation>Alle</translation>
    </message>
    <message>
        <source>In alarm</source>
        <translation>Mit Alarm</translation>
    </message>
    <message>
        <source>Not heard</source>
        <translation>Nicht gehört</translation>
    </message>
    <message>
        <source>Offline</source>
        <translation>Offline</translation>
    </message>
</context>
<context>
    <name>ktr::StationPage</name>
    <message>
        <source>unknown (%1)</source>
        <translation>unbekannt (%1)</translation>
    </message>
    <message>
        <source>%1 (reported: %2)</source>
        <translation>%1 (gemeldet: %2)</translation>
    </message>
    <message>
        <source>not since the operational mode was opened</source>
        <translation>nicht seit dem Öffnen des Betriebsmodus</translation>
    </message>
    <message>
        <source>%1, %2 s ago</source>
        <translation>%1, vor %2 s</translation>
    </message>
    <message>
        <source>%1, %2 min ago</source>
        <translation>%1, vor %2 min</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no address of a module: four numbers from 0 to 255 with dots between them, or a host name; &quot;:port&quot; may follow</source>
        <translation>„%1“ ist keine Adresse eines Moduls: vier Zahlen von 0 bis 255, mit Punkten getrennt, oder ein Hostname; „:Port“ kann folgen</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Address</source>
        <translation>Adresse</translation>
    </message>
    <message>
        <source>Where the module is reached: four numbers from 0 to 255, or a name; port %1 unless &quot;:port&quot; follows</source>
        <translation>Adresse des Moduls: vier Zahlen von 0 bis 255 oder ein Name; Port %1, wenn nicht „:Port“ folgt</translation>
    </message>
    <message>
        <source>Last heard</source>
        <translation>Zuletzt gehört</translation>
    </message>
    <message>
        <source>being configured in the main window</source>
        <translation>wird im Hauptfenster konfiguriert</translation>
    </message>
    <message>
        <source>No station is chosen.</source>
        <translation>Es ist keine Station gewählt.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; has this address, too: what the module sends reaches one of them alone</source>
        <translation>„%1“ hat diese Adresse auch: was das Modul sendet, erreicht nur eine von beiden</translation>
    </message>
</context>
<context>
    <name>ktr::StationPicker</name>
    <message>
        <source>All that are shown</source>
        <translation>Alle angezeigten</translation>
    </message>
    <message>
        <source>Find a station</source>
        <translation>Station suchen</translation>
    </message>
    <message>
        <source>Shows the stations whose names hold this text</source>
        <translation>Zeigt die Stationen, deren Name diesen Text enthält</translation>
    </message>
    <message>
        <source>Ticks the stations of the list, or none of them</source>
        <translation>Setzt die Haken bei allen Stationen der Liste oder bei keiner</translation>
    </message>
    <message>
        <source>Stations</source>
        <translation>Stationen</translation>
    </message>
    <message>
        <source>The space bar ticks the station that is chosen</source>
        <translation>Die Leertaste setzt den Haken bei der gewählten Station</translation>
    </message>
    <message>
        <source>%1 chosen</source>
        <translation>%1 gewählt</translation>
    </message>
    <message>
        <source>%1, %2 of them not shown</source>
        <translation>%1, davon %2 nicht angezeigt</translation>
    </message>
</context>
<context>
    <name>ktr::StationTreeDelegate</name>
    <message>
        <source>excl.</source>
        <translation>exkl.</translation>
    </message>
    <message>
        <source>floods</source>
        <translation>Flut</translation>
    </message>
    <message>
        <source>losses</source>
        <translation>Verlust</translation>
    </message>
</context>
<context>
    <name>ktr::StationTreePane</name>
    <message>
        <source>Find a station (name or address)</source>
        <translation>Name, Adresse suchen</translation>
    </message>
    <message>
        <source>Stations shown</source>
        <translation>Angezeigte Stationen</translation>
    </message>
    <message>
        <source>Stations</source>
        <translation>Stationen</translation>
    </message>
    <message>
        <source>Order</source>
        <translation>Anordnung</translation>
    </message>
    <message>
        <source>Order and grouping of the stations</source>
        <translation>Reihenfolge und Gruppen der Stationen</translation>
    </message>
    <message>
        <source>In the order of the list</source>
        <translation>In der Reihenfolge der Liste</translation>
    </message>
    <message>
        <source>By name</source>
        <translation>Nach Namen</translation>
    </message>
    <message>
        <source>The most urgent first</source>
        <translation>Die dringendsten zuerst</translation>
    </message>
    <message>
        <source>The longest unheard first</source>
        <translation>Am längsten nicht gehört zuerst</translation>
    </message>
    <message>
        <source>Not grouped</source>
        <translation>Nicht gruppiert</translation>
    </message>
    <message>
        <source>Grouped by state</source>
        <translation>Nach Zustand gruppiert</translation>
    </message>
    <message>
        <source>In the groups of the overview</source>
        <translation>In den Gruppen der Übersicht</translation>
    </message>
    <message>
        <source>Collapse all</source>
        <translation>Alle zuklappen</translation>
    </message>
    <message>
        <source>Open all stations</source>
        <translation>Alle Stationen aufklappen</translation>
    </message>
</context>
<context>
    <name>ktr::StationTreeView</name>
    <message>
        <source>A station needs a name</source>
        <translation>Eine Station braucht einen Namen</translation>
    </message>
    <message>
        <source>A name must not hold a &quot;/&quot;</source>
        <translation>Ein Name darf kein „/“ enthalten</translation>
    </message>
    <message>
        <source>Another station is called &quot;%1&quot; already</source>
        <translation>Eine andere Station heißt schon „%1“</translation>
    </message>
</context>
<context>
    <name>ktr::StatusLine</name>
    <message>
        <source>modified</source>
        <translation>geändert</translation>
    </message>
    <message>
        <source>There are changes that are not saved</source>
        <translation>Es gibt nicht gespeicherte Änderungen</translation>
    </message>
    <message>
        <source>Progress of the transmission</source>
        <translation>Fortschritt der Übertragung</translation>
    </message>
    <message>
        <source>Waiting: %1 – take back</source>
        <translation>Wartet: %1 – zurücknehmen</translation>
    </message>
    <message>
        <source>%1 is sent when the module next reads an SMS; a click takes it back</source>
        <translation>%1 wird gesendet, sobald das Modul die nächste SMS liest; ein Klick nimmt es zurück</translation>
    </message>
    <message>
        <source>Nobody watches the stations: %L1</source>
        <translation>Niemand überwacht die Stationen: %L1</translation>
    </message>
    <message>
        <source>The operational mode was closed: no alarm of these stations arrives. A click opens it again.</source>
        <translation>Der Betriebsmodus wurde geschlossen: Kein Alarm dieser Stationen kommt an. Ein Klick öffnet ihn wieder.</translation>
    </message>
</context>
<context>
    <name>ktr::SwitchPointPage</name>
    <message>
        <source>Switches: %1</source>
        <translation>Schaltet: %1</translation>
    </message>
    <message>
        <source>Type %1: %2</source>
        <translation>Typ %1: %2</translation>
    </message>
</context>
<context>
    <name>ktr::SwitchTimeline</name>
    <message>
        <source>Mon</source>
        <translation>Mo</translation>
    </message>
    <message>
        <source>Tue</source>
        <translation>Di</translation>
    </message>
    <message>
        <source>Wed</source>
        <translation>Mi</translation>
    </message>
    <message>
        <source>Thu</source>
        <translation>Do</translation>
    </message>
    <message>
        <source>Fri</source>
        <translation>Fr</translation>
    </message>
    <message>
        <source>Sat</source>
        <translation>Sa</translation>
    </message>
    <message>
        <source>Sun</source>
        <translation>So</translation>
    </message>
</context>
<context>
    <name>ktr::TakeOver</name>
    <message>
        <source>The KTRconfig that is open already watches stations in its operational mode. When it is ended, nobody is told of their alarms until the operational mode is opened again.</source>
        <translation>Das KTRconfig, das schon offen ist, überwacht in seinem Betriebsmodus Stationen. Wird es beendet, meldet niemand deren Alarme, bis der Betriebsmodus wieder geöffnet wird.</translation>
    </message>
    <message>
        <source>End it and start here</source>
        <translation>Dort beenden und hier starten</translation>
    </message>
    <message>
        <source>Leave it running</source>
        <translation>Weiterlaufen lassen</translation>
    </message>
    <message>
        <source>Waiting for the other KTRconfig window to close. It may ask whether to save.</source>
        <translation>Warten, bis sich das andere Fenster von KTRconfig schließt. Es fragt vielleicht, ob gespeichert werden soll.</translation>
    </message>
    <message>
        <source>The KTRconfig that is open already does not answer. It is waited for a few seconds longer, then this one starts all the same.</source>
        <translation>Das KTRconfig, das schon offen ist, antwortet nicht. Es wird noch einige Sekunden darauf gewartet, dann startet dieses trotzdem.</translation>
    </message>
    <message>
        <source>Do not wait, start here</source>
        <translation>Nicht warten, hier starten</translation>
    </message>
    <message>
        <source>Do not wait, quit</source>
        <translation>Nicht warten, beenden</translation>
    </message>
    <message>
        <source>The KTRconfig that is open already transmits a configuration. When it is ended, the module holds a part of it only.</source>
        <translation>Das bereits geöffnete KTRconfig überträgt eine Konfiguration. Wird es beendet, enthält das Modul nur einen Teil davon.</translation>
    </message>
    <message>
        <source>The KTRconfig that is open already sends firmware to a module. When it is ended, the module has a part of it only and may not work until it gets all of it.</source>
        <translation>Das bereits geöffnete KTRconfig sendet Firmware an ein Modul. Wird es beendet, hat das Modul nur einen Teil davon und arbeitet möglicherweise nicht, bis es sie ganz bekommt.</translation>
    </message>
    <message>
        <source>Another KTRconfig is open and does not answer. It was not waited for.</source>
        <translation>Ein anderes KTRconfig ist geöffnet und antwortet nicht. Es wurde nicht darauf gewartet.</translation>
    </message>
    <message>
        <source>Something stands in the place of an open KTRconfig and hangs up whenever it is asked. It was not waited for.</source>
        <translation>An der Stelle eines geöffneten KTRconfig steht etwas, das bei jeder Frage auflegt. Es wurde nicht darauf gewartet.</translation>
    </message>
    <message>
        <source>What is saved there and here into the same file replaces each other.</source>
        <translation>Was dort und hier in dieselbe Datei gespeichert wird, ersetzt sich gegenseitig.</translation>
    </message>
    <message>
        <source>Start here, too, and look on</source>
        <translation>Auch hier starten und zusehen</translation>
    </message>
    <message>
        <source>Another KTRconfig watches the stations; the operational mode here joins it.</source>
        <translation>Ein anderes KTRconfig überwacht die Stationen; der Betriebsmodus hier schließt sich ihm an.</translation>
    </message>
</context>
<context>
    <name>ktr::TestPage</name>
    <message>
        <source>A command, up to %1 characters; Enter sends it, Up and Down bring back earlier ones</source>
        <translation>Ein Befehl, bis zu %1 Zeichen; die Eingabetaste sendet ihn, Pfeil auf und Pfeil ab holen frühere zurück</translation>
    </message>
    <message>
        <source>The module confirms each command of a transmission</source>
        <translation>Das Modul bestätigt jeden Befehl einer Übertragung</translation>
    </message>
    <message>
        <source>Sets the module&apos;s clock by this computer&apos;s</source>
        <translation>Stellt die Uhr des Moduls nach der Uhr dieses Rechners</translation>
    </message>
    <message>
        <source>Sends k, or K where an answer is wanted</source>
        <translation>Sendet k, oder K, wenn eine Antwort gewünscht ist</translation>
    </message>
    <message>
        <source>Fast history export</source>
        <translation>Schneller Historienexport</translation>
    </message>
    <message>
        <source>Show the conversation</source>
        <translation>Datenverkehr anzeigen</translation>
    </message>
    <message>
        <source>Sends %1</source>
        <translation>Sendet %1</translation>
    </message>
    <message>
        <source>Sets the module&apos;s clock to another date and time</source>
        <translation>Stellt die Uhr des Moduls auf ein anderes Datum und eine andere Uhrzeit</translation>
    </message>
</context>
<context>
    <name>ktr::TileContents</name>
    <message>
        <source>being configured in the main window</source>
        <translation>wird im Hauptfenster konfiguriert</translation>
    </message>
    <message>
        <source>put aside: %1</source>
        <translation>zurückgestellt: %1</translation>
    </message>
    <message>
        <source>acknowledged: %1</source>
        <translation>quittiert: %1</translation>
    </message>
    <message>
        <source>silent, %1</source>
        <translation>stumm, %1</translation>
    </message>
    <message>
        <source>Alarms not acknowledged: %1</source>
        <translation>Alarme nicht quittiert: %1</translation>
    </message>
    <message>
        <source>Last heard %1</source>
        <translation>Zuletzt gehört %1</translation>
    </message>
    <message>
        <source>In no group</source>
        <translation>In keiner Gruppe</translation>
    </message>
    <message>
        <source>%1: %L2 stations</source>
        <translation>%1: %L2 Stationen</translation>
    </message>
    <message>
        <source>%1, folded</source>
        <translation>%1, eingeklappt</translation>
    </message>
</context>
<context>
    <name>ktr::TimeMapLegend</name>
    <message>
        <source>Legend</source>
        <translation>Legende</translation>
    </message>
    <message>
        <source>the most urgent alarm: high (&quot;!&quot;)</source>
        <translation>dringlichster Alarm: hoch („!“)</translation>
    </message>
    <message>
        <source>medium</source>
        <translation>mittel</translation>
    </message>
    <message>
        <source>low</source>
        <translation>niedrig</translation>
    </message>
    <message>
        <source>stronger from %1, %2 and %3 alarms on</source>
        <translation>kräftiger ab %1, %2 und %3 Alarmen</translation>
    </message>
    <message>
        <source>not heard below %1 % of the time</source>
        <translation>unter %1 % der Zeit nicht gehört</translation>
    </message>
    <message>
        <source>from %1 %</source>
        <translation>ab %1 %</translation>
    </message>
    <message>
        <source>nobody watched</source>
        <translation>niemand überwachte</translation>
    </message>
    <message>
        <source>number: minutes</source>
        <translation>Zahl: Minuten</translation>
    </message>
    <message>
        <source>number: stations</source>
        <translation>Zahl: Stationen</translation>
    </message>
</context>
<context>
    <name>ktr::TimeMapPage</name>
    <message>
        <source>Alarms</source>
        <translation>Alarme</translation>
    </message>
    <message>
        <source>When alarms came</source>
        <translation>Wann Alarme kamen</translation>
    </message>
    <message>
        <source>Silence</source>
        <translation>Schweigen</translation>
    </message>
    <message>
        <source>When stations were silent or offline</source>
        <translation>Wann Stationen stumm oder offline waren</translation>
    </message>
    <message>
        <source>Group</source>
        <translation>Gruppe</translation>
    </message>
    <message>
        <source>All stations, or those of a group of the overview</source>
        <translation>Alle Stationen oder die einer Gruppe der Übersicht</translation>
    </message>
    <message>
        <source>Since midnight</source>
        <translation>Seit Mitternacht</translation>
    </message>
    <message>
        <source>Chooses the hours from midnight until now</source>
        <translation>Wählt die Stunden von Mitternacht bis jetzt</translation>
    </message>
    <message>
        <source>Month</source>
        <translation>Monat</translation>
    </message>
    <message>
        <source>Quarter</source>
        <translation>Quartal</translation>
    </message>
    <message>
        <source>Year</source>
        <translation>Jahr</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Zeit</translation>
    </message>
    <message>
        <source>How many days are shown</source>
        <translation>Wie viele Tage gezeigt werden</translation>
    </message>
    <message>
        <source>Earlier</source>
        <translation>Früher</translation>
    </message>
    <message>
        <source>The days before (Page up in the map)</source>
        <translation>Die Tage davor (Bild auf in der Karte)</translation>
    </message>
    <message>
        <source>Later</source>
        <translation>Später</translation>
    </message>
    <message>
        <source>The days behind (Page down in the map)</source>
        <translation>Die Tage danach (Bild ab in der Karte)</translation>
    </message>
    <message>
        <source>Day</source>
        <translation>Tag</translation>
    </message>
    <message>
        <source>A day that is shown</source>
        <translation>Ein Tag, der gezeigt wird</translation>
    </message>
    <message>
        <source>Today</source>
        <translation>Heute</translation>
    </message>
    <message>
        <source>Map of time</source>
        <translation>Zeitkarte</translation>
    </message>
    <message>
        <source>Show in the record</source>
        <translation>In der Aufzeichnung zeigen</translation>
    </message>
    <message>
        <source>What happened in the hours that are chosen (Enter in the map)</source>
        <translation>Was in den gewählten Stunden geschah (Eingabetaste in der Karte)</translation>
    </message>
    <message>
        <source>Stations</source>
        <translation>Stationen</translation>
    </message>
    <message>
        <source>All stations</source>
        <translation>Alle Stationen</translation>
    </message>
    <message>
        <source>In no group</source>
        <translation>In keiner Gruppe</translation>
    </message>
    <message>
        <source>There are no stations</source>
        <translation>Es gibt keine Stationen</translation>
    </message>
    <message>
        <source>No station is in this group</source>
        <translation>In dieser Gruppe ist keine Station</translation>
    </message>
    <message>
        <source>A click, or Enter, shows what happened in that hour. Arrow keys choose an hour, with Shift or by dragging several.</source>
        <translation>Ein Klick oder die Eingabetaste zeigt, was in der Stunde geschah. Pfeiltasten wählen eine Stunde, mit Umschalt oder durch Ziehen mehrere.</translation>
    </message>
    <message>
        <source>A click, or the arrow keys, choose an hour, dragging or Shift several: the list has their stations. A double click, or Enter, shows what happened.</source>
        <translation>Ein Klick oder die Pfeiltasten wählen eine Stunde, Ziehen oder Umschalt mehrere: Die Liste hat deren Stationen. Doppelklick oder Eingabetaste zeigt, was geschah.</translation>
    </message>
    <message>
        <source>Reading …</source>
        <translation>Wird gelesen …</translation>
    </message>
    <message>
        <source>The record is empty: nothing has been written down yet.</source>
        <translation>Die Aufzeichnung ist leer: Noch wurde nichts festgehalten.</translation>
    </message>
    <message>
        <source>The record begins later, on %1.</source>
        <translation>Die Aufzeichnung beginnt später, am %1.</translation>
    </message>
    <message>
        <source>These days are still to come.</source>
        <translation>Diese Tage kommen erst noch.</translation>
    </message>
    <message>
        <source>No alarm came in these days.</source>
        <translation>In diesen Tagen kam kein Alarm.</translation>
    </message>
    <message>
        <source>Alarms in these days: %1</source>
        <translation>Alarme in diesen Tagen: %1</translation>
    </message>
    <message>
        <source>No station was silent or offline in these days.</source>
        <translation>Keine Station war in diesen Tagen stumm oder offline.</translation>
    </message>
    <message>
        <source>Not heard in these days: %1, of all stations together</source>
        <translation>Nicht gehört in diesen Tagen: %1, alle Stationen zusammen</translation>
    </message>
    <message>
        <source>These hours are still to come.</source>
        <translation>Diese Stunden kommen erst noch.</translation>
    </message>
    <message>
        <source>%1: no alarm</source>
        <translation>%1: kein Alarm</translation>
    </message>
    <message>
        <source>%1: nobody watched for %2</source>
        <translation>%1: für %2 überwachte niemand</translation>
    </message>
    <message>
        <source>%1: all stations were heard</source>
        <translation>%1: alle Stationen wurden gehört</translation>
    </message>
    <message>
        <source>%1: stations with alarms: %2</source>
        <translation>%1: Stationen mit Alarmen: %2</translation>
    </message>
    <message>
        <source>%1: stations not heard: %2</source>
        <translation>%1: nicht gehörte Stationen: %2</translation>
    </message>
    <message>
        <source>Not heard in these days: %1</source>
        <translation>Nicht gehört in diesen Tagen: %1</translation>
    </message>
    <message>
        <source>The name of a station, or a part of several, in the place of the group</source>
        <translation>Der Name einer Station oder ein Teil mehrerer Namen, an Stelle der Gruppe</translation>
    </message>
    <message>
        <source>No station has &quot;%1&quot; in its name</source>
        <translation>Keine Station hat „%1“ im Namen</translation>
    </message>
    <message>
        <source>Now: silent %L1, offline %L2</source>
        <translation>Jetzt: stumm %L1, offline %L2</translation>
    </message>
</context>
<context>
    <name>ktr::TimeMapView</name>
    <message>
        <source> (before the clocks are set back)</source>
        <translation> (vor der Zeitumstellung)</translation>
    </message>
    <message>
        <source> (after the clocks were set back)</source>
        <translation> (nach der Zeitumstellung)</translation>
    </message>
    <message>
        <source>is still to come</source>
        <translation>kommt erst noch</translation>
    </message>
    <message>
        <source>is being read</source>
        <translation>wird gelesen</translation>
    </message>
</context>
<context>
    <name>ktr::TransmissionNotes</name>
    <message>
        <source>The transmission is remembered now</source>
        <translation>Die Übertragung ist jetzt festgehalten</translation>
    </message>
    <message>
        <source>The transmission is not remembered: %1</source>
        <translation>Die Übertragung wird nicht festgehalten: %1</translation>
    </message>
    <message>
        <source>The settings cannot be written</source>
        <translation>Die Einstellungen lassen sich nicht schreiben</translation>
    </message>
    <message>
        <source>Old transmissions removed: %1</source>
        <translation>Alte Übertragungen entfernt: %1</translation>
    </message>
    <message>
        <source>The transmission is kept in %1 until the server can be reached: %2</source>
        <translation>Die Übertragung wird in %1 aufbewahrt, bis der Server erreichbar ist: %2</translation>
    </message>
    <message>
        <source>Transmissions that waited for the server and are remembered now: %1</source>
        <translation>Übertragungen, die auf den Server warteten und nun vermerkt sind: %1</translation>
    </message>
    <message>
        <source>The memory of transmissions:</source>
        <translation>Das Gedächtnis der Übertragungen:</translation>
    </message>
</context>
<context>
    <name>ktr::TransmissionPanel</name>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Ends the transmission before its next step</source>
        <translation>Beendet die Übertragung vor ihrem nächsten Schritt</translation>
    </message>
    <message>
        <source>Continue</source>
        <translation>Fortsetzen</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Transmitting the configuration</source>
        <translation>Die Konfiguration wird übertragen</translation>
    </message>
    <message>
        <source>Waiting until the module reads its SMS</source>
        <translation>Warten, bis das Modul seine SMS liest</translation>
    </message>
    <message>
        <source>about %1 s left</source>
        <translation>noch etwa %1 s</translation>
    </message>
    <message>
        <source>Transmitting the configuration: step %1 of %2</source>
        <translation>Die Konfiguration wird übertragen: Schritt %1 von %2</translation>
    </message>
    <message>
        <source>step %1</source>
        <translation>Schritt %1</translation>
    </message>
    <message>
        <source>Goes on at the step where the transmission stopped</source>
        <translation>Geht bei dem Schritt weiter, an dem die Übertragung abbrach</translation>
    </message>
    <message>
        <source>Possible with the same configuration over the same connection only</source>
        <translation>Nur mit derselben Konfiguration über dieselbe Verbindung möglich</translation>
    </message>
    <message>
        <source>Transmit anyway</source>
        <translation>Trotzdem übertragen</translation>
    </message>
    <message>
        <source>Receipt...</source>
        <translation>Beleg...</translation>
    </message>
    <message>
        <source>Writes what was transmitted and what became of it into a PDF</source>
        <translation>Schreibt in ein PDF, was übertragen und was daraus wurde</translation>
    </message>
    <message>
        <source>This may be the wrong configuration for this module</source>
        <translation>Dies ist vielleicht die falsche Konfiguration für dieses Modul</translation>
    </message>
</context>
<context>
    <name>ktr::TransmissionsWindow</name>
    <message>
        <source>Transmissions</source>
        <translation>Übertragungen</translation>
    </message>
    <message>
        <source>Station</source>
        <translation>Station</translation>
    </message>
    <message>
        <source>Begun</source>
        <translation>Begonnen</translation>
    </message>
    <message>
        <source>Version</source>
        <translation>Version</translation>
    </message>
    <message>
        <source>Outcome</source>
        <translation>Ergebnis</translation>
    </message>
    <message>
        <source>Line</source>
        <translation>Verbindung</translation>
    </message>
    <message>
        <source>User</source>
        <translation>Benutzer</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Datei</translation>
    </message>
    <message>
        <source>Step</source>
        <translation>Schritt</translation>
    </message>
    <message>
        <source>Command</source>
        <translation>Befehl</translation>
    </message>
    <message>
        <source>Keep for:</source>
        <translation>Aufheben:</translation>
    </message>
    <message>
        <source>ever</source>
        <translation>für immer</translation>
    </message>
    <message>
        <source> years</source>
        <translation> Jahre</translation>
    </message>
    <message>
        <source>Older ones are removed; of each station the newest whole one stays</source>
        <translation>Ältere werden entfernt; von jeder Station bleibt die neueste vollständige</translation>
    </message>
    <message>
        <source>Those in a record on a server stay until its administrator removes them</source>
        <translation>Die in einer Aufzeichnung auf einem Server bleiben, bis deren Verwalter sie entfernt</translation>
    </message>
    <message>
        <source>Open as document</source>
        <translation>Als Dokument öffnen</translation>
    </message>
    <message>
        <source>Compare...</source>
        <translation>Vergleichen...</translation>
    </message>
    <message>
        <source>Compares with the configuration in the main window</source>
        <translation>Vergleicht mit der Konfiguration im Hauptfenster</translation>
    </message>
    <message>
        <source>Export...</source>
        <translation>Exportieren...</translation>
    </message>
    <message>
        <source>Receipt...</source>
        <translation>Beleg...</translation>
    </message>
    <message>
        <source>Nothing was transmitted yet</source>
        <translation>Es wurde noch nichts übertragen</translation>
    </message>
    <message>
        <source>%1, transmitted on %2</source>
        <translation>%1, übertragen am %2</translation>
    </message>
    <message>
        <source>Exported: %1</source>
        <translation>Exportiert: %1</translation>
    </message>
    <message>
        <source>Receipt %1</source>
        <translation>Beleg %1</translation>
    </message>
    <message>
        <source>Receipt written: %1</source>
        <translation>Beleg geschrieben: %1</translation>
    </message>
    <message>
        <source>Remove transmissions that are older than %1 years for good? Of each station the newest whole one stays.</source>
        <translation>Übertragungen, die älter als %1 Jahre sind, endgültig entfernen? Von jeder Station bleibt die neueste vollständige.</translation>
    </message>
</context>
<context>
    <name>ktr::TreeOrder</name>
    <message>
        <source>In no group</source>
        <translation>In keiner Gruppe</translation>
    </message>
    <message>
        <source>Silent</source>
        <translation>Schweigt</translation>
    </message>
    <message>
        <source>Alarms that are acknowledged</source>
        <translation>Quittierte Alarme</translation>
    </message>
    <message>
        <source>PUK or losses</source>
        <translation>PUK oder Verluste</translation>
    </message>
    <message>
        <source>Not heard yet</source>
        <translation>Noch nicht gehört</translation>
    </message>
    <message>
        <source>Alive</source>
        <translation>Erreichbar</translation>
    </message>
    <message>
        <source>Not watched</source>
        <translation>Nicht überwacht</translation>
    </message>
    <message>
        <source>In alarm</source>
        <translation>Mit Alarm</translation>
    </message>
</context>
<context>
    <name>ktr::TrialConduct</name>
    <message>
        <source>What you have edited goes with the trial, unless you save it to a file of your own.</source>
        <translation>Was Sie bearbeitet haben, verschwindet mit dem Probelauf, wenn Sie es nicht in eine eigene Datei speichern.</translation>
    </message>
    <message>
        <source>Save as...</source>
        <translation>Speichern unter...</translation>
    </message>
    <message>
        <source>End the trial</source>
        <translation>Probelauf beenden</translation>
    </message>
    <message>
        <source>Stay</source>
        <translation>Bleiben</translation>
    </message>
</context>
<context>
    <name>ktr::TrialLauncher</name>
    <message>
        <source>It is open already, in a window of its own</source>
        <translation>Es ist schon offen, in einem eigenen Fenster</translation>
    </message>
    <message>
        <source>The trial could not be started: %1</source>
        <translation>Der Probelauf konnte nicht gestartet werden: %1</translation>
    </message>
    <message>
        <source>There is no trial, since its files have no place: %1</source>
        <translation>Der Probelauf beginnt nicht, denn für seine Dateien ist kein Platz: %1</translation>
    </message>
    <message>
        <source>The trial ended by itself, which it should not. It can be started again; your own files and settings are as they were.</source>
        <translation>Der Probelauf ist von selbst zu Ende gegangen, was er nicht sollte. Er kann neu gestartet werden; Ihre eigenen Dateien und Einstellungen sind unverändert.</translation>
    </message>
</context>
<context>
    <name>ktr::TrialNotice</name>
    <message>
        <source>Trial</source>
        <translation>Probelauf</translation>
    </message>
    <message>
        <source>These stations are virtual modules inside this program.</source>
        <translation>Diese Stationen sind virtuelle Module in diesem Programm.</translation>
    </message>
    <message>
        <source>A virtual module inside this program is connected.</source>
        <translation>Ein virtuelles Modul in diesem Programm ist verbunden.</translation>
    </message>
    <message>
        <source>Nothing of this window is kept: neither settings nor lists nor what is transmitted.</source>
        <translation>Von diesem Fenster bleibt nichts: weder Einstellungen noch Listen noch was übertragen wird.</translation>
    </message>
    <message>
        <source>The virtual modules do not work: %1</source>
        <translation>Die virtuellen Module arbeiten nicht: %1</translation>
    </message>
    <message>
        <source>Nothing of this window is kept, unless you save the configuration to a file of your own.</source>
        <translation>Nichts aus diesem Fenster bleibt, wenn Sie die Konfiguration nicht in eine eigene Datei speichern.</translation>
    </message>
</context>
<context>
    <name>ktr::ValueTile</name>
    <message>
        <source>no value yet</source>
        <translation>noch kein Wert</translation>
    </message>
</context>
<context>
    <name>ktr::ValuesPage</name>
    <message>
        <source>Choose a station to see its input values.</source>
        <translation>Eine Station wählen, um ihre Eingangswerte zu sehen.</translation>
    </message>
    <message>
        <source>Since %1: from %2 to %3</source>
        <translation>Seit %1: von %2 bis %3</translation>
    </message>
    <message>
        <source>No values reported yet</source>
        <translation>Noch keine Werte gemeldet</translation>
    </message>
    <message>
        <source>Report of %1</source>
        <translation>Stand: %1</translation>
    </message>
    <message>
        <source>Asks the station for all its input values</source>
        <translation>Fordert alle Eingangswerte der Station an</translation>
    </message>
    <message>
        <source>The station is offline and cannot be asked for its values</source>
        <translation>Die Station ist offline; ihre Werte können nicht angefordert werden</translation>
    </message>
    <message>
        <source>Requested; delivered when the module next looks for an SMS</source>
        <translation>Angefordert; wird zugestellt, sobald das Modul seine SMS liest</translation>
    </message>
    <message>
        <source>The request still waits; it is delivered when the module next looks for an SMS</source>
        <translation>Die Anforderung wartet noch; sie wird zugestellt, wenn das Modul das nächste Mal nach einer SMS sieht</translation>
    </message>
    <message>
        <source>Delivered; the values follow</source>
        <translation>Zugestellt; die Werte folgen</translation>
    </message>
    <message>
        <source>Value of %1</source>
        <translation>Wert von %1</translation>
    </message>
    <message>
        <source>The station is not heard: %1</source>
        <translation>Die Station ist nicht zu hören: %1</translation>
    </message>
    <message>
        <source>Report of %1 – %2, the values are of before</source>
        <translation>Bericht von %1 – %2, die Werte sind von vorher</translation>
    </message>
</context>
<context>
    <name>ktr::VersionCheck</name>
    <message>
        <source>The module reports a station type that is not known: %1</source>
        <translation>Das Modul meldet einen unbekannten Stationstyp: %1</translation>
    </message>
    <message>
        <source>The station type is %1, as the module reports</source>
        <translation>Der Stationstyp ist %1, wie das Modul meldet</translation>
    </message>
</context>
<context>
    <name>ktr::WaitingCommand</name>
    <message>
        <source>%1 was not sent and waits no longer</source>
        <translation>%1 wurde nicht gesendet und wartet nicht mehr</translation>
    </message>
    <message>
        <source>%1 was handed to the module</source>
        <translation>%1 wurde dem Modul übergeben</translation>
    </message>
    <message>
        <source>The command is too long and was not sent</source>
        <translation>Der Befehl ist zu lang und wurde nicht gesendet</translation>
    </message>
</context>
<context>
    <name>ktr::WallHeader</name>
    <message>
        <source>not acknowledged</source>
        <translation>nicht quittiert</translation>
    </message>
    <message>
        <source>acknowledged</source>
        <translation>quittiert</translation>
    </message>
    <message>
        <source>silent</source>
        <translation>stumm</translation>
    </message>
    <message>
        <source>not heard yet</source>
        <translation>noch nicht gehört</translation>
    </message>
    <message>
        <source>not watched</source>
        <translation>nicht überwacht</translation>
    </message>
    <message>
        <source>alive</source>
        <translation>aktiv</translation>
    </message>
</context>
<context>
    <name>ktr::WelcomeWindow</name>
    <message>
        <source>New station</source>
        <translation>Neue Station</translation>
    </message>
    <message>
        <source>Begin the configuration of a station, field by field</source>
        <translation>Die Konfiguration einer Station beginnen, Feld für Feld</translation>
    </message>
    <message>
        <source>Open a file</source>
        <translation>Eine Datei öffnen</translation>
    </message>
    <message>
        <source>A configuration that you or somebody else has saved</source>
        <translation>Eine Konfiguration, die Sie oder jemand anderes gespeichert hat</translation>
    </message>
    <message>
        <source>Try with a virtual module</source>
        <translation>Mit einem virtuellen Modul ausprobieren</translation>
    </message>
    <message>
        <source>Without hardware: a second window, connected to a module inside the program</source>
        <translation>Ohne Hardware: ein zweites Fenster, verbunden mit einem Modul im Programm</translation>
    </message>
    <message>
        <source>Operational mode on a virtual fleet</source>
        <translation>Betriebsmodus an virtuellen Stationen</translation>
    </message>
    <message>
        <source>Watch twelve stations that report values and alarms; your own list is left alone</source>
        <translation>Zwölf Stationen überwachen, die Werte und Alarme melden; Ihre eigene Liste bleibt unberührt</translation>
    </message>
    <message>
        <source>Manual</source>
        <translation>Handbuch</translation>
    </message>
    <message>
        <source>F1 opens it anywhere, at what you are looking at</source>
        <translation>F1 öffnet es überall, bei dem, was Sie gerade vor sich haben</translation>
    </message>
    <message>
        <source>Welcome</source>
        <translation>Willkommen</translation>
    </message>
    <message>
        <source>What do you want to begin with?</source>
        <translation>Womit möchten Sie beginnen?</translation>
    </message>
    <message>
        <source>This page comes once. The menu Help brings it back.</source>
        <translation>Diese Seite kommt einmal. Das Menü Hilfe holt sie zurück.</translation>
    </message>
    <message>
        <source>Language:</source>
        <translation>Sprache:</translation>
    </message>
</context>
<context>
    <name>ktr::frmAbout</name>
    <message>
        <source>Sets up and watches telemetry and alarm modules.</source>
        <translation>Konfiguriert und überwacht Telemetrie- und Alarmmodule.</translation>
    </message>
    <message>
        <source>Works of others in it, and their licences:</source>
        <translation>Werke anderer darin und ihre Lizenzen:</translation>
    </message>
    <message>
        <source>The GPL asks of those who pass KTRconfig on that its source code, too, is to be had from them.</source>
        <translation>Die GPL verlangt von denen, die KTRconfig weitergeben, dass auch sein Quelltext bei ihnen zu haben ist.</translation>
    </message>
    <message>
        <source>The package for Windows holds %1 as well.</source>
        <translation>Das Paket für Windows enthält außerdem %1.</translation>
    </message>
</context>
<context>
    <name>ktr::frmSettings</name>
    <message>
        <source>Appearance</source>
        <translation>Darstellung</translation>
    </message>
    <message>
        <source>Follow the system</source>
        <translation>Wie das System</translation>
    </message>
    <message>
        <source>Light</source>
        <translation>Hell</translation>
    </message>
    <message>
        <source>Dark</source>
        <translation>Dunkel</translation>
    </message>
</context>
<context>
    <name>ktr::frm_preview</name>
    <message>
        <source>Entries in use</source>
        <translation>Verwendete Einträge</translation>
    </message>
    <message>
        <source>Only the limit values and switch points that are in use</source>
        <translation>Nur die verwendeten Grenzwerte und Schaltpunkte</translation>
    </message>
    <message>
        <source>All entries</source>
        <translation>Alle Einträge</translation>
    </message>
    <message>
        <source>All 20 limit values and 20 switch points</source>
        <translation>Alle 20 Grenzwerte und 20 Schaltpunkte</translation>
    </message>
    <message>
        <source>Zoom out</source>
        <translation>Verkleinern</translation>
    </message>
    <message>
        <source>Zoom in</source>
        <translation>Vergrößern</translation>
    </message>
    <message>
        <source>Fit page</source>
        <translation>Ganze Seite</translation>
    </message>
    <message>
        <source>Fit width</source>
        <translation>Seitenbreite</translation>
    </message>
    <message>
        <source>Previous page</source>
        <translation>Vorherige Seite</translation>
    </message>
    <message>
        <source>Next page</source>
        <translation>Nächste Seite</translation>
    </message>
    <message>
        <source>Save as PDF</source>
        <translation>Als PDF speichern</translation>
    </message>
    <message>
        <source>Save as PDF…</source>
        <translation>Als PDF speichern…</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Page</source>
        <translation>Seite</translation>
    </message>
    <message>
        <source>Page, 1 to %1</source>
        <translation>Seite, 1 bis %1</translation>
    </message>
    <message>
        <source>PDF documents</source>
        <translation>PDF-Dokumente</translation>
    </message>
    <message>
        <source>Saved as %1</source>
        <translation>Gespeichert als %1</translation>
    </message>
</context>
</TS>
