<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE" sourcelanguage="en">
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
</TS>
