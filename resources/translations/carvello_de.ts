<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>CAboutDlg</name>
    <message>
        <source>About Carvello</source>
        <translation>Über Carvello</translation>
    </message>
    <message>
        <source>Icon of Carvello</source>
        <translation>Symbol von Carvello</translation>
    </message>
    <message>
        <source>Carvello, Version 1.0</source>
        <translation>Carvello, Version 1.0</translation>
    </message>
    <message>
        <source>Name and version</source>
        <translation>Name und Version</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Close this window</source>
        <translation>Dieses Fenster schließen</translation>
    </message>
    <message>
        <source>What the program is made of</source>
        <translation>Woraus das Programm besteht</translation>
    </message>
    <message>
        <source>What becomes of the details</source>
        <translation>Was aus den Angaben wird</translation>
    </message>
    <message>
        <source>&amp;Copy Details for a Report</source>
        <translation>Angaben für einen Bericht &amp;kopieren</translation>
    </message>
    <message>
        <source>Puts on the clipboard what a report about a fault needs: versions, system, processor, memory, and of the folders in use free space and speed, without what is in them</source>
        <translation>Legt in die Zwischenablage, was ein Bericht über einen Fehler braucht: Versionen, System, Prozessor, Speicher und die Ordner, die das Programm benutzt, ohne ihren Inhalt</translation>
    </message>
    <message>
        <source>Copy Details for a Report</source>
        <translation>Angaben für einen Bericht kopieren</translation>
    </message>
</context>
<context>
    <name>CAddSequence</name>
    <message>
        <source>Add Sequence</source>
        <translation>Serie hinzufügen</translation>
    </message>
    <message>
        <source>&amp;Start freq:</source>
        <translation>&amp;Anfangsfreq.:</translation>
    </message>
    <message>
        <source>One end of the range of frequencies</source>
        <translation>Das eine Ende des Frequenzbereichs</translation>
    </message>
    <message>
        <source>Start frequency</source>
        <translation>Anfangsfrequenz</translation>
    </message>
    <message>
        <source>&amp;End freq:</source>
        <translation>&amp;Endfreq.:</translation>
    </message>
    <message>
        <source>The other end of the range of frequencies</source>
        <translation>Das andere Ende des Frequenzbereichs</translation>
    </message>
    <message>
        <source>End frequency</source>
        <translation>Endfrequenz</translation>
    </message>
    <message>
        <source>S&amp;tep size:</source>
        <translation>&amp;Schrittweite:</translation>
    </message>
    <message>
        <source>Distance from one frequency to the next</source>
        <translation>Abstand von einer Frequenz zur nächsten</translation>
    </message>
    <message>
        <source>Step size</source>
        <translation>Schrittweite</translation>
    </message>
    <message>
        <source>Frequencies of the range that lie within the recorded band</source>
        <translation>Frequenzen des Bereichs, die im aufgenommenen Band liegen</translation>
    </message>
    <message>
        <source>Summary</source>
        <translation>Zusammenfassung</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Add one entry for every frequency of the range</source>
        <translation>Für jede Frequenz des Bereichs einen Eintrag hinzufügen</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Close without adding anything</source>
        <translation>Schließen, ohne etwas hinzuzufügen</translation>
    </message>
</context>
<context>
    <name>CCarvelloDlg</name>
    <message>
        <source>Carvello</source>
        <translation>Carvello</translation>
    </message>
    <message>
        <source>Input</source>
        <translation>Eingabe</translation>
    </message>
    <message>
        <source>The recording to cut from: any file of it</source>
        <translation>Die Aufnahme, aus der geschnitten wird: irgendeine Datei davon</translation>
    </message>
    <message>
        <source>Input recording</source>
        <translation>Aufnahme</translation>
    </message>
    <message>
        <source>Show the file in the file manager</source>
        <translation>Die Datei in der Dateiverwaltung zeigen</translation>
    </message>
    <message>
        <source>Show the input file in the file manager</source>
        <translation>Die Eingabedatei in der Dateiverwaltung zeigen</translation>
    </message>
    <message>
        <source>∙∙∙</source>
        <translation>∙∙∙</translation>
    </message>
    <message>
        <source>Centre freq:</source>
        <translation>Mittenfreq.:</translation>
    </message>
    <message>
        <source>Centre frequency of the recording</source>
        <translation>Mittenfrequenz der Aufnahme</translation>
    </message>
    <message>
        <source>Centre frequency</source>
        <translation>Mittenfrequenz</translation>
    </message>
    <message>
        <source>-</source>
        <translation>-</translation>
    </message>
    <message>
        <source>Bandwidth:</source>
        <translation>Bandbreite:</translation>
    </message>
    <message>
        <source>Bandwidth of the recording, which is its sample rate</source>
        <translation>Bandbreite der Aufnahme, zugleich ihre Abtastrate</translation>
    </message>
    <message>
        <source>Bandwidth</source>
        <translation>Bandbreite</translation>
    </message>
    <message>
        <source>Sample size:</source>
        <translation>Abtastwerte:</translation>
    </message>
    <message>
        <source>Size of one I or Q sample</source>
        <translation>Größe eines I- oder Q-Wertes</translation>
    </message>
    <message>
        <source>Sample size</source>
        <translation>Größe der Abtastwerte</translation>
    </message>
    <message>
        <source>Start:</source>
        <translation>Beginn:</translation>
    </message>
    <message>
        <source>When the recording begins</source>
        <translation>Wann die Aufnahme beginnt</translation>
    </message>
    <message>
        <source>Start of the recording</source>
        <translation>Beginn der Aufnahme</translation>
    </message>
    <message>
        <source>Finish:</source>
        <translation>Ende:</translation>
    </message>
    <message>
        <source>When the recording ends</source>
        <translation>Wann die Aufnahme endet</translation>
    </message>
    <message>
        <source>Finish of the recording</source>
        <translation>Ende der Aufnahme</translation>
    </message>
    <message>
        <source>Total:</source>
        <translation>Dauer:</translation>
    </message>
    <message>
        <source>Length of the recording: days, hours, minutes and seconds</source>
        <translation>Länge der Aufnahme: Tage, Stunden, Minuten und Sekunden</translation>
    </message>
    <message>
        <source>Length</source>
        <translation>Länge</translation>
    </message>
    <message>
        <source>Total files:</source>
        <translation>Dateien:</translation>
    </message>
    <message>
        <source>Number of files that the recording is made of</source>
        <translation>Anzahl der Dateien, aus denen die Aufnahme besteht</translation>
    </message>
    <message>
        <source>Number of files</source>
        <translation>Anzahl der Dateien</translation>
    </message>
    <message>
        <source>Source:</source>
        <translation>Quelle:</translation>
    </message>
    <message>
        <source>The program that made the recording, or its format</source>
        <translation>Das Programm, das aufgenommen hat, oder das Format</translation>
    </message>
    <message>
        <source>Source</source>
        <translation>Quelle</translation>
    </message>
    <message>
        <source>See what is on the air in the recording, and cut from there (F6)</source>
        <translation>Sehen, was in der Aufnahme zu hören ist, und dort schneiden (F6)</translation>
    </message>
    <message>
        <source>Spectrum of the recording</source>
        <translation>Spektrum der Aufnahme</translation>
    </message>
    <message>
        <source>S&amp;pectrum</source>
        <translation>S&amp;pektrum</translation>
    </message>
    <message>
        <source>Show and enter all times in UTC instead of local time</source>
        <translation>Alle Zeiten in UTC statt in Ortszeit zeigen und eingeben</translation>
    </message>
    <message>
        <source>Times in UTC</source>
        <translation>Zeiten in UTC</translation>
    </message>
    <message>
        <source>&amp;UTC</source>
        <translation>&amp;UTC</translation>
    </message>
    <message>
        <source>Output</source>
        <translation>Ausgabe</translation>
    </message>
    <message>
        <source>The folder where the output files are created</source>
        <translation>Der Ordner, in dem die Ausgabedateien angelegt werden</translation>
    </message>
    <message>
        <source>Output folder</source>
        <translation>Ausgabeordner</translation>
    </message>
    <message>
        <source>Open the folder in the file manager</source>
        <translation>Den Ordner in der Dateiverwaltung öffnen</translation>
    </message>
    <message>
        <source>Open the output folder in the file manager</source>
        <translation>Den Ausgabeordner in der Dateiverwaltung öffnen</translation>
    </message>
    <message>
        <source>&amp;Centre freq:</source>
        <translation>&amp;Mittenfreq.:</translation>
    </message>
    <message>
        <source>Centre frequency of the output: MHz, kHz and Hz</source>
        <translation>Mittenfrequenz der Ausgabe: MHz, kHz und Hz</translation>
    </message>
    <message>
        <source>Output centre frequency</source>
        <translation>Mittenfrequenz der Ausgabe</translation>
    </message>
    <message>
        <source>Take the centre frequency of the recording</source>
        <translation>Die Mittenfrequenz der Aufnahme nehmen</translation>
    </message>
    <message>
        <source>◀</source>
        <translation>◀</translation>
    </message>
    <message>
        <source>Band&amp;width:</source>
        <translation>&amp;Bandbreite:</translation>
    </message>
    <message>
        <source>Output bandwidth</source>
        <translation>Bandbreite der Ausgabe</translation>
    </message>
    <message>
        <source>File si&amp;ze:</source>
        <translation>Datei&amp;größe:</translation>
    </message>
    <message>
        <source>Size at which the output is split into files, or one file of any size</source>
        <translation>Größe, bei der die Ausgabe in Dateien geteilt wird, oder eine Datei beliebiger Größe</translation>
    </message>
    <message>
        <source>Output file size</source>
        <translation>Dateigröße der Ausgabe</translation>
    </message>
    <message>
        <source>16-bit integer samples (recommended)</source>
        <translation>Ganzzahlige Werte mit 16 Bit (empfohlen)</translation>
    </message>
    <message>
        <source>Output sample size 16 bit</source>
        <translation>Ausgabe mit 16 Bit</translation>
    </message>
    <message>
        <source>1&amp;6 bit</source>
        <translation>1&amp;6 Bit</translation>
    </message>
    <message>
        <source>32-bit float samples</source>
        <translation>Gleitkommawerte mit 32 Bit</translation>
    </message>
    <message>
        <source>Output sample size 32 bit</source>
        <translation>Ausgabe mit 32 Bit</translation>
    </message>
    <message>
        <source>&amp;32 bit</source>
        <translation>&amp;32 Bit</translation>
    </message>
    <message>
        <source>The output begins where the recording begins</source>
        <translation>Die Ausgabe beginnt, wo die Aufnahme beginnt</translation>
    </message>
    <message>
        <source>Start at beginning</source>
        <translation>Ab Beginn</translation>
    </message>
    <message>
        <source>Start at &amp;beginning</source>
        <translation>Ab Begi&amp;nn</translation>
    </message>
    <message>
        <source>The output begins at this date and time</source>
        <translation>Die Ausgabe beginnt an diesem Tag zu dieser Zeit</translation>
    </message>
    <message>
        <source>Start at date and time</source>
        <translation>Ab Tag und Zeit</translation>
    </message>
    <message>
        <source>Date at which the output begins</source>
        <translation>Tag, an dem die Ausgabe beginnt</translation>
    </message>
    <message>
        <source>Start date</source>
        <translation>Tag des Beginns</translation>
    </message>
    <message>
        <source>Time at which the output begins</source>
        <translation>Zeit, zu der die Ausgabe beginnt</translation>
    </message>
    <message>
        <source>Start time</source>
        <translation>Zeit des Beginns</translation>
    </message>
    <message>
        <source>The output ends where the recording ends</source>
        <translation>Die Ausgabe endet, wo die Aufnahme endet</translation>
    </message>
    <message>
        <source>Finish at end</source>
        <translation>Bis Ende</translation>
    </message>
    <message>
        <source>Finish at e&amp;nd</source>
        <translation>Bis &amp;Ende</translation>
    </message>
    <message>
        <source>The output ends after this time</source>
        <translation>Die Ausgabe endet nach dieser Zeit</translation>
    </message>
    <message>
        <source>Finish after a duration</source>
        <translation>Ende nach einer Dauer</translation>
    </message>
    <message>
        <source>A&amp;fter:</source>
        <translation>Na&amp;ch:</translation>
    </message>
    <message>
        <source>Hours</source>
        <translation>Stunden</translation>
    </message>
    <message>
        <source>Duration, hours</source>
        <translation>Dauer, Stunden</translation>
    </message>
    <message>
        <source>h</source>
        <translation>h</translation>
    </message>
    <message>
        <source>Minutes</source>
        <translation>Minuten</translation>
    </message>
    <message>
        <source>Duration, minutes</source>
        <translation>Dauer, Minuten</translation>
    </message>
    <message>
        <source>m</source>
        <translation>m</translation>
    </message>
    <message>
        <source>The output ends at this date and time</source>
        <translation>Die Ausgabe endet an diesem Tag zu dieser Zeit</translation>
    </message>
    <message>
        <source>Finish at date and time</source>
        <translation>Ende an Tag und Zeit</translation>
    </message>
    <message>
        <source>Date at which the output ends</source>
        <translation>Tag, an dem die Ausgabe endet</translation>
    </message>
    <message>
        <source>Finish date</source>
        <translation>Tag des Endes</translation>
    </message>
    <message>
        <source>Time at which the output ends</source>
        <translation>Zeit, zu der die Ausgabe endet</translation>
    </message>
    <message>
        <source>Finish time</source>
        <translation>Zeit des Endes</translation>
    </message>
    <message>
        <source>Add an entry with the choices above</source>
        <translation>Einen Eintrag mit diesen Angaben hinzufügen</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>Hinzufügen</translation>
    </message>
    <message>
        <source>&amp;Add</source>
        <translation>&amp;Hinzufügen</translation>
    </message>
    <message>
        <source>Add an entry for each step of a range of frequencies</source>
        <translation>Für jeden Schritt eines Frequenzbereichs einen Eintrag hinzufügen</translation>
    </message>
    <message>
        <source>Add Sequence</source>
        <translation>Serie hinzufügen</translation>
    </message>
    <message>
        <source>Add Se&amp;quence</source>
        <translation>Ser&amp;ie</translation>
    </message>
    <message>
        <source>How many entries one run processes, and how many there are</source>
        <translation>Wie viele Einträge ein Lauf verarbeitet, und wie viele es sind</translation>
    </message>
    <message>
        <source>Entries in the list</source>
        <translation>Einträge in der Liste</translation>
    </message>
    <message>
        <source>Process up to 1000 entries in one run, reading the input once for all of them</source>
        <translation>Bis zu 1000 Einträge in einem Lauf verarbeiten, die Eingabe für alle nur einmal lesen</translation>
    </message>
    <message>
        <source>All in one pass</source>
        <translation>Alle in einem Durchgang</translation>
    </message>
    <message>
        <source>All in &amp;one pass</source>
        <translation>&amp;Alle in einem Durchgang</translation>
    </message>
    <message>
        <source>Hint</source>
        <translation>Hinweis</translation>
    </message>
    <message>
        <source>The outputs that the next run makes</source>
        <translation>Die Ausgaben, die der nächste Lauf macht</translation>
    </message>
    <message>
        <source>Entries</source>
        <translation>Einträge</translation>
    </message>
    <message>
        <source>Remove the selected entries</source>
        <translation>Die gewählten Einträge entfernen</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>&amp;Delete</source>
        <translation>&amp;Löschen</translation>
    </message>
    <message>
        <source>Remove all entries</source>
        <translation>Alle Einträge entfernen</translation>
    </message>
    <message>
        <source>Reset</source>
        <translation>Leeren</translation>
    </message>
    <message>
        <source>&amp;Reset</source>
        <translation>Lee&amp;ren</translation>
    </message>
    <message>
        <source>Make the outputs</source>
        <translation>Die Ausgaben machen</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>Start</translation>
    </message>
    <message>
        <source>▶ &amp;Start</source>
        <translation>▶ &amp;Start</translation>
    </message>
    <message>
        <source>End the run; what was written stays valid</source>
        <translation>Den Lauf beenden; was geschrieben ist, bleibt gültig</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Stopp</translation>
    </message>
    <message>
        <source>◼ S&amp;top</source>
        <translation>◼ S&amp;topp</translation>
    </message>
    <message>
        <source>How much of the input is done</source>
        <translation>Wie viel der Eingabe erledigt ist</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Fortschritt</translation>
    </message>
    <message>
        <source>Progress in per cent</source>
        <translation>Fortschritt in Prozent</translation>
    </message>
    <message>
        <source>99.99%</source>
        <translation>99.99%</translation>
    </message>
    <message>
        <source>How the last run ended</source>
        <translation>Wie der letzte Lauf ausgegangen ist</translation>
    </message>
    <message>
        <source>How fast the input is read, and how long the rest of it takes</source>
        <translation>Wie schnell die Eingabe gelesen wird, und wie lange der Rest dauert</translation>
    </message>
    <message>
        <source>Speed and time left</source>
        <translation>Geschwindigkeit und Restzeit</translation>
    </message>
    <message>
        <source>Log</source>
        <translation>Protokoll</translation>
    </message>
    <message>
        <source>What has happened</source>
        <translation>Was geschehen ist</translation>
    </message>
    <message>
        <source>Open the log in the program for text files</source>
        <translation>Das Protokoll im Programm für Textdateien öffnen</translation>
    </message>
    <message>
        <source>View the log as text</source>
        <translation>Das Protokoll als Text zeigen</translation>
    </message>
    <message>
        <source>&amp;View as text</source>
        <translation>Als Te&amp;xt zeigen</translation>
    </message>
    <message>
        <source>Tell how Carvello is used</source>
        <translation>Sagen, wie Carvello benutzt wird</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Hilfe</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>Hil&amp;fe</translation>
    </message>
    <message>
        <source>Help text</source>
        <translation>Hilfetext</translation>
    </message>
    <message>
        <source>Open and save the list as a job file, undo and redo</source>
        <translation>Die Liste als Jobdatei öffnen und speichern, rückgängig machen und wiederholen</translation>
    </message>
    <message>
        <source>Job</source>
        <translation>Job</translation>
    </message>
    <message>
        <source>&amp;Job</source>
        <translation>&amp;Job</translation>
    </message>
    <message>
        <source>Run all batches without a question: existing files are left out, and failures are told at the end</source>
        <translation>Alle Teile ohne Frage durchlaufen lassen: was existiert, bleibt weg, und was scheitert, wird am Ende gesagt</translation>
    </message>
    <message>
        <source>Unattended</source>
        <translation>Ohne Aufsicht</translation>
    </message>
    <message>
        <source>Unatt&amp;ended</source>
        <translation>&amp;Ohne Aufsicht</translation>
    </message>
    <message>
        <source>Bandwidth of the output, which is its sample rate: chosen, or typed as 12.5k, 10 kHz or 12500 Hz</source>
        <translation>Bandbreite der Ausgabe, zugleich ihre Abtastrate: gewählt, oder als 12.5k, 10 kHz oder 12500 Hz eingegeben</translation>
    </message>
    <message>
        <source>Put the choices above in the place of the entry that was double-clicked (or Enter, F2)</source>
        <translation>Diese Angaben an die Stelle des Eintrags setzen, der doppelt angeklickt wurde (oder Eingabetaste, F2)</translation>
    </message>
    <message>
        <source>Replace the edited entry</source>
        <translation>Den bearbeiteten Eintrag ersetzen</translation>
    </message>
    <message>
        <source>Rep&amp;lace</source>
        <translation>Erset&amp;zen</translation>
    </message>
    <message>
        <source>Take the frequency that is meant</source>
        <translation>Die gemeinte Frequenz nehmen</translation>
    </message>
</context>
<context>
    <name>CEntryTable</name>
    <message>
        <source>Folder</source>
        <translation>Ordner</translation>
    </message>
    <message>
        <source>Bits</source>
        <translation>Bits</translation>
    </message>
    <message>
        <source>File size</source>
        <translation>Dateigröße</translation>
    </message>
    <message>
        <source>Expected size</source>
        <translation>Erwartete Größe</translation>
    </message>
    <message>
        <source>Centre</source>
        <translation>Mitte</translation>
    </message>
    <message>
        <source>Bw</source>
        <translation>Bb</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>Beginn</translation>
    </message>
    <message>
        <source>Finish</source>
        <translation>Ende</translation>
    </message>
    <message>
        <source>Filename</source>
        <translation>Dateiname</translation>
    </message>
    <message>
        <source>%1
%2 to %3
File name: %4
Folder: %5
Sample size: %6 bit
File size: %7
Expected size: %8</source>
        <translation>%1
%2 bis %3
Dateiname: %4
Ordner: %5
Abtastwerte: %6 Bit
Dateigröße: %7
Erwartete Größe: %8</translation>
    </message>
</context>
<context>
    <name>CSpectrumWindow</name>
    <message>
        <source>Spectrum</source>
        <translation>Spektrum</translation>
    </message>
    <message>
        <source>Frequency, time and level under the cursor</source>
        <translation>Frequenz, Zeit und Pegel unter dem Zeiger</translation>
    </message>
    <message>
        <source>Under the cursor</source>
        <translation>Unter dem Zeiger</translation>
    </message>
    <message>
        <source>Length of the transform and width of one of its bins, and what is in view</source>
        <translation>Länge der Transformation und Breite eines ihrer Kanäle, und was zu sehen ist</translation>
    </message>
    <message>
        <source>Transform and view</source>
        <translation>Transformation und Ausschnitt</translation>
    </message>
    <message>
        <source>How much of the recording has been looked at</source>
        <translation>Wie viel der Aufnahme angesehen wurde</translation>
    </message>
    <message>
        <source>Overview</source>
        <translation>Übersicht</translation>
    </message>
    <message>
        <source>Progress of the overview</source>
        <translation>Fortschritt der Übersicht</translation>
    </message>
    <message>
        <source>View</source>
        <translation>Ansicht</translation>
    </message>
    <message>
        <source>Sho&amp;w:</source>
        <translation>An&amp;zeigen:</translation>
    </message>
    <message>
        <source>Average brings out what is weak and steady, peak what is short</source>
        <translation>Mittel zeigt, was schwach und stetig ist, Spitze, was kurz ist</translation>
    </message>
    <message>
        <source>Waterfall shows</source>
        <translation>Wasserfall zeigt</translation>
    </message>
    <message>
        <source>&amp;Transform:</source>
        <translation>&amp;Transformation:</translation>
    </message>
    <message>
        <source>Points of a transform: more tell frequencies better apart, fewer tell times</source>
        <translation>Punkte einer Transformation: mehr trennen Frequenzen besser, weniger die Zeiten</translation>
    </message>
    <message>
        <source>Length of the transform</source>
        <translation>Länge der Transformation</translation>
    </message>
    <message>
        <source>W&amp;indow:</source>
        <translation>&amp;Fenster:</translation>
    </message>
    <message>
        <source>Hann for most; Blackman-Harris beside strong stations; flat top for exact levels</source>
        <translation>Hann für das meiste; Blackman-Harris neben starken Sendern; Flat top für genaue Pegel</translation>
    </message>
    <message>
        <source>Window of the transform</source>
        <translation>Fenster der Transformation</translation>
    </message>
    <message>
        <source>Levels</source>
        <translation>Pegel</translation>
    </message>
    <message>
        <source>&amp;Palette:</source>
        <translation>&amp;Palette:</translation>
    </message>
    <message>
        <source>Colours from weak to strong</source>
        <translation>Farben von schwach bis stark</translation>
    </message>
    <message>
        <source>Palette</source>
        <translation>Palette</translation>
    </message>
    <message>
        <source>Levels from the noise floor of what is in view</source>
        <translation>Pegel nach dem Rauschen dessen, was zu sehen ist</translation>
    </message>
    <message>
        <source>Automatic levels</source>
        <translation>Selbsttätige Pegel</translation>
    </message>
    <message>
        <source>A&amp;utomatic</source>
        <translation>A&amp;utomatisch</translation>
    </message>
    <message>
        <source>&amp;High:</source>
        <translation>&amp;Oben:</translation>
    </message>
    <message>
        <source>Level of the brightest colour</source>
        <translation>Pegel der hellsten Farbe</translation>
    </message>
    <message>
        <source>Highest level</source>
        <translation>Höchster Pegel</translation>
    </message>
    <message>
        <source> dBFS</source>
        <translation> dBFS</translation>
    </message>
    <message>
        <source>&amp;Low:</source>
        <translation>U&amp;nten:</translation>
    </message>
    <message>
        <source>Level of the darkest colour</source>
        <translation>Pegel der dunkelsten Farbe</translation>
    </message>
    <message>
        <source>Lowest level</source>
        <translation>Niedrigster Pegel</translation>
    </message>
    <message>
        <source>Cut</source>
        <translation>Schnitt</translation>
    </message>
    <message>
        <source>S&amp;nap to:</source>
        <translation>&amp;Raster:</translation>
    </message>
    <message>
        <source>The middle of what is dragged goes to a multiple of this</source>
        <translation>Die Mitte des Gezogenen geht auf ein Vielfaches davon</translation>
    </message>
    <message>
        <source>Raster of frequencies</source>
        <translation>Frequenzraster</translation>
    </message>
    <message>
        <source>The middle of what is dragged goes to the strongest carrier in it</source>
        <translation>Die Mitte des Gezogenen geht auf den stärksten Träger darin</translation>
    </message>
    <message>
        <source>Snap to the carrier</source>
        <translation>Am Träger ausrichten</translation>
    </message>
    <message>
        <source>Snap to &amp;carrier</source>
        <translation>Am Trä&amp;ger ausrichten</translation>
    </message>
    <message>
        <source>What Add puts on the list</source>
        <translation>Was Hinzufügen auf die Liste setzt</translation>
    </message>
    <message>
        <source>What is to be cut</source>
        <translation>Was geschnitten wird</translation>
    </message>
    <message>
        <source>Put what is chosen on the list of entries (Enter)</source>
        <translation>Das Gewählte auf die Liste der Einträge setzen (Eingabetaste)</translation>
    </message>
    <message>
        <source>Add the cut</source>
        <translation>Den Schnitt hinzufügen</translation>
    </message>
    <message>
        <source>A&amp;dd</source>
        <translation>&amp;Hinzufügen</translation>
    </message>
    <message>
        <source>Forget what is chosen (Escape)</source>
        <translation>Das Gewählte vergessen (Escape)</translation>
    </message>
    <message>
        <source>Drop the cut</source>
        <translation>Den Schnitt verwerfen</translation>
    </message>
    <message>
        <source>D&amp;rop</source>
        <translation>&amp;Verwerfen</translation>
    </message>
    <message>
        <source>Signals</source>
        <translation>Signale</translation>
    </message>
    <message>
        <source>Look for what stands out of the noise, in the frequencies and times in view</source>
        <translation>Suchen, was aus dem Rauschen ragt, in den Frequenzen und Zeiten, die zu sehen sind</translation>
    </message>
    <message>
        <source>Find signals</source>
        <translation>Signale suchen</translation>
    </message>
    <message>
        <source>&amp;Find signals</source>
        <translation>Signale su&amp;chen</translation>
    </message>
    <message>
        <source>So far above the noise a signal stands at least</source>
        <translation>So weit liegt ein Signal mindestens über dem Rauschen</translation>
    </message>
    <message>
        <source>Decibels above the noise</source>
        <translation>Dezibel über dem Rauschen</translation>
    </message>
    <message>
        <source> dB</source>
        <translation> dB</translation>
    </message>
    <message>
        <source>Signals found: frequency, bandwidth, and decibels above the noise</source>
        <translation>Gefundene Signale: Frequenz, Bandbreite und Dezibel über dem Rauschen</translation>
    </message>
    <message>
        <source>Signals found</source>
        <translation>Gefundene Signale</translation>
    </message>
    <message>
        <source>How the search goes</source>
        <translation>Wie die Suche läuft</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Suche</translation>
    </message>
    <message>
        <source>Put the selected signals on the list of entries, each in the next bandwidth offered</source>
        <translation>Die gewählten Signale auf die Liste der Einträge setzen, jedes in der nächsten angebotenen Bandbreite</translation>
    </message>
    <message>
        <source>Add the selected signals</source>
        <translation>Die gewählten Signale hinzufügen</translation>
    </message>
    <message>
        <source>Tak&amp;e</source>
        <translation>Üb&amp;ernehmen</translation>
    </message>
    <message>
        <source>Put all signals on the list of entries</source>
        <translation>Alle Signale auf die Liste der Einträge setzen</translation>
    </message>
    <message>
        <source>Add all signals</source>
        <translation>Alle Signale hinzufügen</translation>
    </message>
    <message>
        <source>T&amp;ake all</source>
        <translation>&amp;Alle übernehmen</translation>
    </message>
    <message>
        <source>Save what is seen, with its axes, as a PNG file (Ctrl+S)</source>
        <translation>Was zu sehen ist, mit seinen Achsen, als PNG-Datei speichern (Strg+S)</translation>
    </message>
    <message>
        <source>Save the picture</source>
        <translation>Das Bild speichern</translation>
    </message>
    <message>
        <source>&amp;Save…</source>
        <translation>&amp;Speichern…</translation>
    </message>
    <message>
        <source>Copy what is seen, with its axes (Ctrl+C)</source>
        <translation>Was zu sehen ist, mit seinen Achsen, kopieren (Strg+C)</translation>
    </message>
    <message>
        <source>Copy the picture</source>
        <translation>Das Bild kopieren</translation>
    </message>
    <message>
        <source>Cop&amp;y</source>
        <translation>&amp;Kopieren</translation>
    </message>
    <message>
        <source>Keep overviews of recordings in the folder for caches, at most 1 GB, so that they are there at once the next time</source>
        <translation>Übersichten von Aufnahmen im Ordner für Zwischenspeicher behalten, höchstens 1 GB, damit sie beim nächsten Mal sofort da sind</translation>
    </message>
    <message>
        <source>Keep overviews</source>
        <translation>Übersichten behalten</translation>
    </message>
    <message>
        <source>&amp;Keep overviews</source>
        <translation>Übers&amp;ichten behalten</translation>
    </message>
</context>
<context>
    <name>JobQuestions</name>
    <message>
        <source>Job files (*.json)</source>
        <translation>Jobdateien (*.json)</translation>
    </message>
    <message>
        <source>All files (*)</source>
        <translation>Alle Dateien (*)</translation>
    </message>
    <message>
        <source>Open Job</source>
        <translation>Job öffnen</translation>
    </message>
    <message>
        <source>Save Job</source>
        <translation>Job speichern</translation>
    </message>
    <message>
        <source>The job was made for another recording:
%1</source>
        <translation>Der Job wurde für eine andere Aufnahme gemacht:
%1</translation>
    </message>
    <message>
        <source>&amp;Open That Recording</source>
        <translation>&amp;Jene Aufnahme öffnen</translation>
    </message>
    <message>
        <source>&amp;Apply to This One</source>
        <translation>Auf &amp;diese anwenden</translation>
    </message>
    <message>
        <source>Applied to the recording that is open, its times can be shifted, to lie as long after the start as they did there, or stay the same dates and times.</source>
        <translation>Auf die offene Aufnahme angewendet, können die Zeiten verschoben werden, so dass sie ebenso lange nach dem Beginn liegen wie dort, oder dieselben Tage und Zeiten bleiben.</translation>
    </message>
    <message>
        <source>Apply, &amp;Shifted</source>
        <translation>Anwenden, &amp;verschoben</translation>
    </message>
    <message>
        <source>Apply, Same &amp;Times</source>
        <translation>Anwenden, gleiche &amp;Zeiten</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>&amp;Replace</source>
        <translation>&amp;Ersetzen</translation>
    </message>
    <message>
        <source>Entries that were neither run nor saved: %1</source>
        <translation>Einträge, die weder gelaufen noch gespeichert sind: %1</translation>
    </message>
    <message>
        <source>The list is kept, and offered when this recording is opened the next time.</source>
        <translation>Die Liste wird behalten und angeboten, wenn diese Aufnahme das nächste Mal geöffnet wird.</translation>
    </message>
    <message>
        <source>&amp;Save…</source>
        <translation>&amp;Speichern…</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>&amp;Schließen</translation>
    </message>
</context>
<context>
    <name>ListSums</name>
    <message>
        <source>Entries: %1, hours: %2, expected: %3</source>
        <translation>Einträge: %1, Stunden: %2, erwartet: %3</translation>
    </message>
    <message>
        <source>Entries: %1, hours: %2, expected: %3, free: not known</source>
        <translation>Einträge: %1, Stunden: %2, erwartet: %3, frei: nicht bekannt</translation>
    </message>
    <message>
        <source>Does not fit: entries: %1, hours: %2, expected: %3, free: %4 in %5</source>
        <translation>Passt nicht: Einträge: %1, Stunden: %2, erwartet: %3, frei: %4 in %5</translation>
    </message>
    <message>
        <source>Entries: %1, hours: %2, expected: %3, free: %4</source>
        <translation>Einträge: %1, Stunden: %2, erwartet: %3, frei: %4</translation>
    </message>
</context>
<context>
    <name>QFileDialog</name>
    <message>
        <source>Save Picture</source>
        <translation>Bild speichern</translation>
    </message>
    <message>
        <source>PNG pictures (*.png)</source>
        <translation>PNG-Bilder (*.png)</translation>
    </message>
</context>
<context>
    <name>SpokenText</name>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
</context>
<context>
    <name>Texts</name>
    <message>
        <source>Start</source>
        <translation>Start</translation>
    </message>
    <message>
        <source>Start Time</source>
        <translation>Beginn</translation>
    </message>
    <message>
        <source>End</source>
        <translation>Ende</translation>
    </message>
    <message>
        <source>End Time</source>
        <translation>Ende</translation>
    </message>
    <message>
        <source>Continue</source>
        <translation>Fortfahren</translation>
    </message>
    <message>
        <source>Open File</source>
        <translation>Datei öffnen</translation>
    </message>
    <message>
        <source>Open Folder</source>
        <translation>Ordner öffnen</translation>
    </message>
    <message>
        <source>Save Picture</source>
        <translation>Bild speichern</translation>
    </message>
    <message>
        <source>The start time is out of range. Reset the start time?</source>
        <translation>Der Beginn liegt außerhalb der Aufnahme. Den Beginn zurücksetzen?</translation>
    </message>
    <message>
        <source>The end time is out of range. Reset the end time?</source>
        <translation>Das Ende liegt außerhalb der Aufnahme. Das Ende zurücksetzen?</translation>
    </message>
    <message>
        <source>End duration cannot be zero.</source>
        <translation>Die Dauer darf nicht null sein.</translation>
    </message>
    <message>
        <source>The start time + end duration is past the end of file, change the duration.</source>
        <translation>Beginn und Dauer reichen über das Ende der Datei hinaus; bitte die Dauer ändern.</translation>
    </message>
    <message>
        <source>The end time is before the start time.</source>
        <translation>Das Ende liegt vor dem Beginn.</translation>
    </message>
    <message>
        <source>The maximum entries which can be processed is %1, you have added %2.

Continue?</source>
        <translation>Es können höchstens %1 Einträge verarbeitet werden, hinzugefügt sind %2.

Fortfahren?</translation>
    </message>
    <message>
        <source>The output file already exists, overwrite it?</source>
        <translation>Die Ausgabedatei existiert schon. Überschreiben?</translation>
    </message>
    <message>
        <source>%1 of %2 file(s) already exist, do you want to overwrite them?</source>
        <translation>%1 von %2 Datei(en) existieren schon. Sollen sie überschrieben werden?</translation>
    </message>
    <message>
        <source>A thread could not be started</source>
        <translation>Ein Thread ließ sich nicht starten</translation>
    </message>
    <message>
        <source>All output files exist, processing not started.</source>
        <translation>Alle Ausgabedateien existieren, es wurde nichts begonnen.</translation>
    </message>
    <message>
        <source>%1 of %2 entries have been processed. Remove from list and continue?</source>
        <translation>%1 von %2 Einträgen wurden verarbeitet. Aus der Liste entfernen und fortfahren?</translation>
    </message>
    <message>
        <source>The input holds no files</source>
        <translation>Die Eingabe enthält keine Dateien</translation>
    </message>
    <message>
        <source>cannot be read</source>
        <translation>kann nicht gelesen werden</translation>
    </message>
    <message>
        <source>%1 would replace the input file %2</source>
        <translation>%1 würde die Eingabedatei %2 ersetzen</translation>
    </message>
    <message>
        <source>Up to %1 files would be open at a time, and the system allows this program %2: raise that limit, or cut fewer entries at a time</source>
        <translation>Bis zu %1 Dateien wären zugleich offen, und das System erlaubt diesem Programm %2: diese Grenze anheben, oder weniger Einträge auf einmal schneiden</translation>
    </message>
    <message>
        <source>The downconverter library Vantrel is missing or incomplete: %1</source>
        <translation>Die Bibliothek Vantrel, die umsetzt, fehlt oder ist unvollständig: %1</translation>
    </message>
    <message>
        <source>failed: %1</source>
        <translation>gescheitert: %1</translation>
    </message>
    <message>
        <source>Stopped: %1 of %2 outputs complete</source>
        <translation>Angehalten: %1 von %2 Ausgaben vollständig</translation>
    </message>
    <message>
        <source>%1 of %2 outputs written</source>
        <translation>%1 von %2 Ausgaben geschrieben</translation>
    </message>
    <message>
        <source>%1 of %2 outputs failed:</source>
        <translation>%1 von %2 Ausgaben gescheitert:</translation>
    </message>
    <message>
        <source>%1 failed</source>
        <translation>%1 gescheitert</translation>
    </message>
    <message>
        <source>%1 existed</source>
        <translation>%1 gab es schon</translation>
    </message>
    <message>
        <source>%1 not begun</source>
        <translation>%1 nicht begonnen</translation>
    </message>
    <message>
        <source>and %1 more, which the list and the log name.</source>
        <translation>und %1 weitere, die Liste und Protokoll nennen.</translation>
    </message>
    <message>
        <source>waiting</source>
        <translation>wartet</translation>
    </message>
    <message>
        <source>done</source>
        <translation>fertig</translation>
    </message>
    <message>
        <source>stopped</source>
        <translation>angehalten</translation>
    </message>
    <message>
        <source>exists</source>
        <translation>existiert</translation>
    </message>
    <message>
        <source>not finished</source>
        <translation>nicht fertig</translation>
    </message>
    <message>
        <source>Error writing %1 bytes - %2</source>
        <translation>Fehler beim Schreiben von %1 Bytes - %2</translation>
    </message>
    <message>
        <source>%1 MB/s, %2 left</source>
        <translation>%1 MB/s, noch %2</translation>
    </message>
    <message>
        <source>%1; see the log</source>
        <translation>%1; siehe Protokoll</translation>
    </message>
    <message>
        <source>the bandwidth %1 is out of range.</source>
        <translation>die Bandbreite %1 ist außerhalb des Bereichs.</translation>
    </message>
    <message>
        <source>the end time is the start time: it runs to the end.</source>
        <translation>Das Ende ist der Beginn: es läuft bis zum Ende.</translation>
    </message>
    <message>
        <source>the start time lies behind the last sample</source>
        <translation>der Beginn liegt hinter dem letzten Abtastwert</translation>
    </message>
    <message>
        <source>wholly outside %1 to %2</source>
        <translation>ganz außerhalb von %1 bis %2</translation>
    </message>
    <message>
        <source>partly outside %1 to %2</source>
        <translation>teilweise außerhalb von %1 bis %2</translation>
    </message>
    <message>
        <source>in the list already; not taken over: %1</source>
        <translation>schon in der Liste; nicht übernommen: %1</translation>
    </message>
    <message>
        <source>in the list already</source>
        <translation>schon in der Liste</translation>
    </message>
    <message>
        <source>folder</source>
        <translation>Ordner</translation>
    </message>
    <message>
        <source>sample size</source>
        <translation>Größe der Abtastwerte</translation>
    </message>
    <message>
        <source>file size</source>
        <translation>Dateigröße</translation>
    </message>
    <message>
        <source>One file (RF64)</source>
        <translation>Eine Datei (RF64)</translation>
    </message>
    <message>
        <source>Maximum entries: %1, current: %2</source>
        <translation>Einträge höchstens: %1, jetzt: %2</translation>
    </message>
    <message>
        <source>Maximum entries: %1</source>
        <translation>Einträge höchstens: %1</translation>
    </message>
    <message>
        <source>%1 to %2 in steps of %3. Total entries %4.</source>
        <translation>%1 bis %2 in Schritten von %3. Einträge: %4.</translation>
    </message>
    <message>
        <source>Follows the zoom</source>
        <translation>Folgt dem Zoom</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>Aus</translation>
    </message>
    <message>
        <source>Average</source>
        <translation>Mittel</translation>
    </message>
    <message>
        <source>Peak</source>
        <translation>Spitze</translation>
    </message>
    <message>
        <source>Flat top</source>
        <translation>Flat top</translation>
    </message>
    <message>
        <source>Grey</source>
        <translation>Grau</translation>
    </message>
    <message>
        <source>%1, whole recording</source>
        <translation>%1, ganze Aufnahme</translation>
    </message>
    <message>
        <source>%1, level not known yet</source>
        <translation>%1, Pegel noch nicht bekannt</translation>
    </message>
    <message>
        <source>Not enough memory</source>
        <translation>Nicht genug Speicher</translation>
    </message>
    <message>
        <source>The run could not go on: %1</source>
        <translation>Der Lauf konnte nicht weitergehen: %1</translation>
    </message>
    <message>
        <source>Outputs not begun: %1</source>
        <translation>Nicht begonnene Ausgaben: %1</translation>
    </message>
    <message>
        <source>Not enough memory for the search</source>
        <translation>Nicht genug Speicher für die Suche</translation>
    </message>
    <message>
        <source>The system gives no thread for the search</source>
        <translation>Das System gibt keinen Thread für die Suche</translation>
    </message>
    <message>
        <source>no samples could be found in it</source>
        <translation>keine Abtastwerte darin gefunden</translation>
    </message>
    <message>
        <source>cannot be opened - %1</source>
        <translation>kann nicht geöffnet werden - %1</translation>
    </message>
    <message>
        <source>cannot be opened: %1</source>
        <translation>kann nicht geöffnet werden: %1</translation>
    </message>
    <message>
        <source>cannot be read - %1</source>
        <translation>kann nicht gelesen werden - %1</translation>
    </message>
    <message>
        <source>is no ordinary file</source>
        <translation>ist keine gewöhnliche Datei</translation>
    </message>
    <message>
        <source>frame %1 cannot be reached</source>
        <translation>Abtastwert %1 ist nicht zu erreichen</translation>
    </message>
    <message>
        <source>reading stopped at byte %1 of its %2 sample bytes - %3</source>
        <translation>Lesen endete bei Byte %1 von %2 Bytes an Abtastwerten - %3</translation>
    </message>
    <message>
        <source>the file ends too early</source>
        <translation>die Datei endet zu früh</translation>
    </message>
    <message>
        <source>its status cannot be had any more</source>
        <translation>ihr Zustand ist nicht mehr zu erfahren</translation>
    </message>
    <message>
        <source>it has changed since it was analysed: %1 bytes instead of %2</source>
        <translation>seit der Untersuchung verändert: %1 Bytes statt %2</translation>
    </message>
    <message>
        <source>it has changed since it was analysed: it was written to</source>
        <translation>seit der Untersuchung verändert: es wurde hineingeschrieben</translation>
    </message>
    <message>
        <source>it has changed since it was analysed: another file has its name</source>
        <translation>seit der Untersuchung verändert: eine andere Datei trägt den Namen</translation>
    </message>
    <message>
        <source>its samples are %1, those of the recording %2</source>
        <translation>die Abtastwerte sind %1, die der Aufnahme %2</translation>
    </message>
    <message>
        <source>it holds %1 sample bytes, the recording has %2 there</source>
        <translation>enthält %1 Bytes an Abtastwerten, die Aufnahme hat dort %2</translation>
    </message>
    <message>
        <source>%1 samples in %2 channels cannot be read; accepted are 2 channels of 8, 16, 24 or 32-bit PCM or 32 or 64-bit float</source>
        <translation>Abtastwerte %1 in %2 Kanälen können nicht gelesen werden; möglich sind 2 Kanäle mit 8, 16, 24 oder 32 Bit PCM oder 32 oder 64 Bit Gleitkomma</translation>
    </message>
    <message>
        <source>Not a valid WAVE file</source>
        <translation>Keine gültige WAVE-Datei</translation>
    </message>
    <message>
        <source>Not a valid WAVE RF64 file</source>
        <translation>Keine gültige WAVE-RF64-Datei</translation>
    </message>
    <message>
        <source>[ERROR] More than %1 chunks and none of them holds samples</source>
        <translation>[FEHLER] Mehr als %1 Blöcke, und keiner enthält Abtastwerte</translation>
    </message>
    <message>
        <source>[ERROR] Failed to read header!</source>
        <translation>[FEHLER] Der Kopf ist nicht zu lesen!</translation>
    </message>
    <message>
        <source>[ERROR] Invalid data chunk!...Exiting</source>
        <translation>[FEHLER] Ungültiger Datenblock! Abgebrochen</translation>
    </message>
    <message>
        <source>[ERROR] Failed to read ds64 chunk from the file</source>
        <translation>[FEHLER] Der Block ds64 ist nicht zu lesen</translation>
    </message>
    <message>
        <source>[ERROR] Failed to read next chunk from the file</source>
        <translation>[FEHLER] Der nächste Block ist nicht zu lesen</translation>
    </message>
    <message>
        <source>[ERROR] No format before the data chunk</source>
        <translation>[FEHLER] Kein Format vor dem Datenblock</translation>
    </message>
    <message>
        <source>[ERROR] Failed to skip the chunk</source>
        <translation>[FEHLER] Der Block ist nicht zu überspringen</translation>
    </message>
    <message>
        <source>[ERROR] Failed to get the file&apos;s length</source>
        <translation>[FEHLER] Die Länge der Datei ist nicht zu erfahren</translation>
    </message>
    <message>
        <source>[ERROR] Invalid data bytes size!</source>
        <translation>[FEHLER] Ungültige Zahl von Datenbytes!</translation>
    </message>
    <message>
        <source>The input ends before the first entry begins</source>
        <translation>Die Eingabe endet, bevor der erste Eintrag beginnt</translation>
    </message>
    <message>
        <source>the recording ends earlier than it did</source>
        <translation>die Aufnahme endet früher als zuvor</translation>
    </message>
    <message>
        <source>no answer</source>
        <translation>keine Antwort</translation>
    </message>
    <message>
        <source>a bandwidth of 0 Hz cannot be cut</source>
        <translation>eine Bandbreite von 0 Hz ist nicht auszuschneiden</translation>
    </message>
    <message>
        <source>a bandwidth of %1 Hz is wider than the input, which has %2 Hz</source>
        <translation>eine Bandbreite von %1 Hz ist breiter als die Eingabe mit %2 Hz</translation>
    </message>
    <message>
        <source>samples of %1 bits cannot be written</source>
        <translation>Abtastwerte mit %1 Bit können nicht geschrieben werden</translation>
    </message>
    <message>
        <source>no samples of the input lie between its start and its end</source>
        <translation>zwischen seinem Beginn und seinem Ende liegen keine Abtastwerte der Eingabe</translation>
    </message>
    <message>
        <source>the input ended: frames of its stretch that were read: %1, due: %2</source>
        <translation>die Eingabe endete: gelesene Abtastwerte seines Stücks: %1, nötig: %2</translation>
    </message>
    <message>
        <source>frames of the input that were read for it: %1, due: %2</source>
        <translation>für ihn gelesene Abtastwerte der Eingabe: %1, nötig: %2</translation>
    </message>
    <message>
        <source>samples written: %1, due: %2</source>
        <translation>geschriebene Abtastwerte: %1, nötig: %2</translation>
    </message>
    <message>
        <source>no file was written</source>
        <translation>keine Datei wurde geschrieben</translation>
    </message>
    <message>
        <source>Unknown error</source>
        <translation>Unbekannter Fehler</translation>
    </message>
    <message>
        <source>Unknown error %1</source>
        <translation>Unbekannter Fehler %1</translation>
    </message>
    <message>
        <source>The downconverter library gave %1 samples where %2 were due, of which it may keep %3 back</source>
        <translation>Die Bibliothek zum Heruntermischen gab %1 Abtastwerte statt der %2, von denen sie %3 zurückhalten darf</translation>
    </message>
    <message>
        <source>The downconverter library has no memory for it</source>
        <translation>Die Bibliothek zum Heruntermischen hat keinen Speicher dafür</translation>
    </message>
    <message>
        <source>The downconverter library has no memory, or no way, for a ratio of %1 to %2</source>
        <translation>Die Bibliothek zum Heruntermischen hat keinen Speicher oder keinen Weg für ein Verhältnis von %1 zu %2</translation>
    </message>
    <message>
        <source>The downconverter library does not bring %1 to %2 samples per second</source>
        <translation>Die Bibliothek zum Heruntermischen bringt %1 nicht auf %2 Abtastwerte in der Sekunde</translation>
    </message>
    <message>
        <source>The shared spectrum does not bring %1 to %2 samples per second</source>
        <translation>Das gemeinsame Spektrum bringt %1 nicht auf %2 Abtastwerte in der Sekunde</translation>
    </message>
    <message>
        <source>%1 exists and is no recording that could be read</source>
        <translation>%1 besteht schon und ist keine lesbare Aufnahme</translation>
    </message>
    <message>
        <source>%1 exists and is another recording, of another start or frequency</source>
        <translation>%1 besteht schon und ist eine andere Aufnahme, mit anderem Beginn oder anderer Frequenz</translation>
    </message>
    <message>
        <source>%1 exists and is another recording, %2 bits at %3 Hz</source>
        <translation>%1 besteht schon und ist eine andere Aufnahme, %2 Bit mit %3 Hz</translation>
    </message>
    <message>
        <source>%1 is not finished: %2 of %3 frames</source>
        <translation>%1 ist nicht fertig: %2 von %3 Abtastwerten</translation>
    </message>
    <message>
        <source>%1 is not finished</source>
        <translation>%1 ist nicht fertig</translation>
    </message>
    <message>
        <source>File not open</source>
        <translation>Datei nicht geöffnet</translation>
    </message>
    <message>
        <source>Error writing the end of the file - %1</source>
        <translation>Fehler beim Schreiben des Dateiendes - %1</translation>
    </message>
    <message>
        <source>Error writing the first file - %1</source>
        <translation>Fehler beim Schreiben der ersten Datei - %1</translation>
    </message>
    <message>
        <source>A link that leads nowhere stands under this name</source>
        <translation>Unter diesem Namen steht ein Verweis, der ins Leere führt</translation>
    </message>
    <message>
        <source>The file exists already</source>
        <translation>Die Datei besteht schon</translation>
    </message>
    <message>
        <source>The file exists already and cannot be read: %1</source>
        <translation>Die Datei besteht schon und kann nicht gelesen werden: %1</translation>
    </message>
    <message>
        <source>the file does not hold what was written to it</source>
        <translation>die Datei enthält nicht, was hineingeschrieben wurde</translation>
    </message>
    <message>
        <source>another file stands under its name now</source>
        <translation>unter ihrem Namen steht jetzt eine andere Datei</translation>
    </message>
    <message>
        <source>Another program is writing this file</source>
        <translation>Ein anderes Programm schreibt diese Datei</translation>
    </message>
    <message>
        <source>%1 The device is held open by another program.</source>
        <translation>%1 Ein anderes Programm hält das Gerät geöffnet.</translation>
    </message>
    <message>
        <source>Error processing &quot;%1&quot; -</source>
        <translation>Fehler beim Öffnen von „%1“ -</translation>
    </message>
    <message>
        <source>invalid argument (error %1)</source>
        <translation>ungültiger Wert (Fehler %1)</translation>
    </message>
    <message>
        <source>invalid pointer (error %1)</source>
        <translation>ungültiger Zeiger (Fehler %1)</translation>
    </message>
    <message>
        <source>%1: entry %2</source>
        <translation>%1: Eintrag %2</translation>
    </message>
    <message>
        <source>line %1, column %2</source>
        <translation>Zeile %1, Spalte %2</translation>
    </message>
    <message>
        <source>%1: line %2, column %3</source>
        <translation>%1: Zeile %2, Spalte %3</translation>
    </message>
    <message>
        <source>no JSON: %1</source>
        <translation>kein JSON: %1</translation>
    </message>
    <message>
        <source>the file ends early</source>
        <translation>die Datei endet zu früh</translation>
    </message>
    <message>
        <source>too large for a job file. Accepted: less than 64 MiB</source>
        <translation>zu groß für eine Auftragsdatei. Möglich: weniger als 64 MiB</translation>
    </message>
    <message>
        <source>a text or number of more than %1 bytes</source>
        <translation>ein Text oder eine Zahl mit mehr als %1 Bytes</translation>
    </message>
    <message>
        <source>not an object. Accepted: %1</source>
        <translation>kein Objekt. Möglich: %1</translation>
    </message>
    <message>
        <source>not an object. Accepted: for example %1</source>
        <translation>kein Objekt. Möglich ist zum Beispiel %1</translation>
    </message>
    <message>
        <source>unknown key &quot;%1&quot;. Accepted: %2</source>
        <translation>unbekannter Schlüssel „%1“. Möglich: %2</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is given twice</source>
        <translation>„%1“ steht zweimal da</translation>
    </message>
    <message>
        <source>%1 &quot;%2&quot; cannot be read. Accepted: %3</source>
        <translation>%1 „%2“ ist nicht zu lesen. Möglich: %3</translation>
    </message>
    <message>
        <source>%1 is missing. Accepted: %2</source>
        <translation>%1 fehlt. Möglich: %2</translation>
    </message>
    <message>
        <source>end and duration exclude each other. Accepted: one of them, or none for the recording&apos;s end</source>
        <translation>end und duration schließen sich aus. Möglich: eines davon oder keines, bis zum Ende der Aufnahme</translation>
    </message>
    <message>
        <source>one entry too many. Accepted: at most %1</source>
        <translation>ein Eintrag zu viel. Möglich: höchstens %1</translation>
    </message>
    <message>
        <source>%1 entries. Accepted: at most %2</source>
        <translation>%1 Einträge. Möglich: höchstens %2</translation>
    </message>
    <message>
        <source>&quot;entries&quot; is no list. Accepted: a list of objects</source>
        <translation>„entries“ ist keine Liste. Möglich: eine Liste von Objekten</translation>
    </message>
    <message>
        <source>&quot;local_time&quot; is neither true nor false</source>
        <translation>„local_time“ ist weder true noch false</translation>
    </message>
    <message>
        <source>&quot;recorded&quot; cannot be read. Accepted: %1</source>
        <translation>„recorded“ ist nicht zu lesen. Möglich: %1</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no text. Accepted: a path</source>
        <translation>„%1“ ist kein Text. Möglich: ein Pfad</translation>
    </message>
    <message>
        <source>&quot;%1&quot; holds a character 0. Accepted: a path</source>
        <translation>„%1“ enthält ein Zeichen 0. Möglich: ein Pfad</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is neither a text nor a number</source>
        <translation>„%1“ ist weder ein Text noch eine Zahl</translation>
    </message>
    <message>
        <source>no output has a bandwidth of %1 Hz</source>
        <translation>keine Ausgabe hat eine Bandbreite von %1 Hz</translation>
    </message>
    <message>
        <source>the start time is out of range.</source>
        <translation>die Startzeit ist außerhalb des Bereichs.</translation>
    </message>
    <message>
        <source>the end time is out of range.</source>
        <translation>die Endzeit ist außerhalb des Bereichs.</translation>
    </message>
    <message>
        <source>Accepted: a start from %1 (+0) to before %2 (+%3), an end after the start and not after %4, a duration that is not 0 and ends before %5</source>
        <translation>Möglich: ein Beginn von %1 (+0) bis vor %2 (+%3), ein Ende nach dem Beginn und nicht nach %4, eine Dauer, die nicht 0 ist und vor %5 endet</translation>
    </message>
    <message>
        <source>16 or 32</source>
        <translation>16 oder 32</translation>
    </message>
    <message>
        <source>a folder</source>
        <translation>ein Ordner</translation>
    </message>
    <message>
        <source>a whole number from 1 to 100000</source>
        <translation>eine ganze Zahl von 1 bis 100000</translation>
    </message>
    <message>
        <source>100MB, 1GB or RF64</source>
        <translation>100MB, 1GB oder RF64</translation>
    </message>
    <message>
        <source>whole Hz, with the suffix k, M or G if wanted, for example 7100000, 7100k or 7.1M</source>
        <translation>ganze Hz, auf Wunsch mit k, M oder G dahinter, zum Beispiel 7100000, 7100k oder 7.1M</translation>
    </message>
    <message>
        <source>whole seconds, H:MM or H:MM:SS, for example 90, 1:30 or 0:01:30</source>
        <translation>ganze Sekunden, H:MM oder H:MM:SS, zum Beispiel 90, 1:30 oder 0:01:30</translation>
    </message>
    <message>
        <source>a date and time with its zone, in whole seconds, for example 2026-11-21T12:00:00Z or 2026-11-21T14:00+02:00, or +SECONDS from the recording&apos;s start, for example +90</source>
        <translation>Datum und Uhrzeit mit Zeitzone in ganzen Sekunden, zum Beispiel 2026-11-21T12:00:00Z oder 2026-11-21T14:00+02:00, oder +SEKUNDEN ab dem Beginn der Aufnahme, zum Beispiel +90</translation>
    </message>
    <message>
        <source>a date and time with its zone, in whole seconds, for example 2026-11-21T12:00:00Z or 2026-11-21T14:00+02:00</source>
        <translation>Datum und Uhrzeit mit Zeitzone in ganzen Sekunden, zum Beispiel 2026-11-21T12:00:00Z oder 2026-11-21T14:00+02:00</translation>
    </message>
    <message>
        <source>%1, which describes it, cannot be had any more</source>
        <translation>%1, worin sie beschrieben ist, ist nicht mehr erreichbar</translation>
    </message>
    <message>
        <source>%1, which describes it, has changed since it was analysed</source>
        <translation>%1, worin sie beschrieben ist, hat sich seit der Untersuchung geändert</translation>
    </message>
    <message>
        <source>%1 exists and tells of another recording</source>
        <translation>%1 besteht schon und beschreibt eine andere Aufnahme</translation>
    </message>
</context>
<context>
    <name>WaysOut</name>
    <message>
        <source>No program of this desktop takes it. Open it with a program of your own, or install the desktop&apos;s opener; on Linux that is xdg-open, of the package xdg-utils.</source>
        <translation>Kein Programm dieser Arbeitsumgebung nimmt es an. Bitte mit einem eigenen Programm öffnen, oder den Öffner der Arbeitsumgebung installieren; unter Linux ist das xdg-open aus dem Paket xdg-utils.</translation>
    </message>
    <message>
        <source>It is not there any more. Connect its disk or put it back, or choose another.</source>
        <translation>Sie ist nicht mehr da. Bitte ihr Laufwerk anschließen, sie zurücklegen oder eine andere wählen.</translation>
    </message>
    <message>
        <source>The recording is gone since it was chosen. Connect its disk or put it back, then start again.</source>
        <translation>Die Aufnahme ist verschwunden, seit sie gewählt wurde. Bitte ihr Laufwerk anschließen oder sie zurücklegen, dann neu starten.</translation>
    </message>
    <message>
        <source>The recording is there, but cannot be read. Ask for the right to read it, or copy it to where you may.</source>
        <translation>Die Aufnahme ist da, kann aber nicht gelesen werden. Bitte um das Leserecht bitten, oder sie dorthin kopieren, wo es besteht.</translation>
    </message>
    <message>
        <source>Create the folder or connect its disk, or choose another folder for the entries.</source>
        <translation>Bitte den Ordner anlegen, sein Laufwerk anschließen oder für die Einträge einen anderen Ordner wählen.</translation>
    </message>
    <message>
        <source>Choose a folder for the entries that you may write to.</source>
        <translation>Bitte für die Einträge einen Ordner wählen, in den geschrieben werden darf.</translation>
    </message>
    <message>
        <source>Choose another folder for the entries.</source>
        <translation>Bitte für die Einträge einen anderen Ordner wählen.</translation>
    </message>
    <message>
        <source>Connect the disk or choose another folder, then start again; what exists is left out.</source>
        <translation>Das Laufwerk verbinden oder einen anderen Ordner wählen und noch einmal starten; was vorhanden ist, wird ausgelassen.</translation>
    </message>
    <message>
        <source>What failed stays on the list: put the cause right, and press Start again.</source>
        <translation>Was gescheitert ist, bleibt auf der Liste: die Ursache beheben und noch einmal Start drücken.</translation>
    </message>
    <message>
        <source>It is there, but may not be read. Ask for the right to read it.</source>
        <translation>Sie ist da, darf aber nicht gelesen werden. Bitte um das Leserecht bitten.</translation>
    </message>
    <message>
        <source>Its disk or the connection to it is failing. Check it, then try again.</source>
        <translation>Ihr Laufwerk oder die Verbindung dorthin ist gestört. Bitte prüfen und dann erneut versuchen.</translation>
    </message>
    <message>
        <source>The list is still there. Save it in another place with Save As, in the menu of Job.</source>
        <translation>Die Liste ist noch da. Bitte an einem anderen Ort speichern: „Speichern unter“ im Menü „Job“.</translation>
    </message>
    <message>
        <source>Nothing can be written there. Choose another folder for the entries, or check its disk.</source>
        <translation>Dort kann nichts geschrieben werden. Bitte für die Einträge einen anderen Ordner wählen oder das Laufwerk prüfen.</translation>
    </message>
</context>
<context>
    <name>carvello::CAboutDlg</name>
    <message>
        <source>Copying measures the disks in use and a short cut, which takes some seconds.</source>
        <translation>Beim Kopieren werden die Laufwerke und ein kurzer Schnitt gemessen, was einige Sekunden dauert.</translation>
    </message>
    <message>
        <source>A job is at work, so the disks and a short cut are not measured.</source>
        <translation>Ein Auftrag läuft, darum werden die Laufwerke und ein kurzer Schnitt nicht gemessen.</translation>
    </message>
    <message>
        <source>Looking at the system…</source>
        <translation>Sieht das System an…</translation>
    </message>
    <message>
        <source>The details are on the clipboard.</source>
        <translation>Die Angaben sind in der Zwischenablage.</translation>
    </message>
</context>
<context>
    <name>carvello::CAnnouncer</name>
    <message>
        <source>Progress: %1 %</source>
        <translation>Fortschritt: %1 %</translation>
    </message>
    <message>
        <source>and %1 more</source>
        <translation>und %1 weitere</translation>
    </message>
</context>
<context>
    <name>carvello::CCarvelloDlg</name>
    <message>
        <source>WAV recording files (*.WAV)|*.WAV|Winradio files (*.DDC)|*.DDC||</source>
        <translation>WAV-Aufnahmen (*.WAV)|*.WAV|Winradio-Dateien (*.DDC)|*.DDC||</translation>
    </message>
    <message>
        <source>Select the folder where the output files are created</source>
        <translation>Den Ordner wählen, in dem die Ausgabedateien angelegt werden</translation>
    </message>
    <message>
        <source>Hint</source>
        <translation>Hinweis</translation>
    </message>
    <message>
        <source>Hint: %1</source>
        <translation>Hinweis: %1</translation>
    </message>
    <message>
        <source>Open Job</source>
        <translation>Job öffnen</translation>
    </message>
    <message>
        <source>The job names no output folder. Choose one first.</source>
        <translation>Der Job nennt keinen Ausgabeordner. Bitte zuerst einen wählen.</translation>
    </message>
    <message>
        <source>The job names no recording. Choose the one that it is for first.</source>
        <translation>Der Job nennt keine Aufnahme. Bitte zuerst die wählen, für die er ist.</translation>
    </message>
    <message>
        <source>The recording of the job cannot be read:
%1
Choose another one first.</source>
        <translation>Die Aufnahme des Jobs kann nicht gelesen werden:
%1
Bitte zuerst eine andere wählen.</translation>
    </message>
    <message>
        <source>Entries that do not fit this recording and are left out: %1 of %2. The first of them:
%3</source>
        <translation>Einträge, die nicht zu dieser Aufnahme passen und wegbleiben: %1 von %2. Der erste davon:
%3</translation>
    </message>
    <message>
        <source>is a file of the recording</source>
        <translation>ist eine Datei der Aufnahme</translation>
    </message>
    <message>
        <source>Save Job</source>
        <translation>Job speichern</translation>
    </message>
    <message>
        <source>The list of %1 can be put back. Entries: %2</source>
        <translation>Die Liste von %1 kann zurückgelegt werden. Einträge: %2</translation>
    </message>
    <message>
        <source>Put Bac&amp;k</source>
        <translation>Zurüc&amp;klegen</translation>
    </message>
    <message>
        <source>Entries that keep the folder they were added with: %1</source>
        <translation>Einträge, die den Ordner behalten, mit dem sie hinzugefügt wurden: %1</translation>
    </message>
    <message>
        <source>&amp;Move to This Folder</source>
        <translation>In diesen Ordner &amp;verschieben</translation>
    </message>
    <message>
        <source>Waiting for %1…</source>
        <translation>Wartet auf %1…</translation>
    </message>
    <message>
        <source>Recordings are being cut</source>
        <translation>Aufnahmen werden geschnitten</translation>
    </message>
    <message>
        <source>The run has ended</source>
        <translation>Der Lauf ist zu Ende</translation>
    </message>
    <message>
        <source>Nothing was written</source>
        <translation>Nichts wurde geschrieben</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>&amp;Bearbeiten</translation>
    </message>
    <message>
        <source>&amp;Delete</source>
        <translation>&amp;Löschen</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Kopieren</translation>
    </message>
    <message>
        <source>Select &amp;all</source>
        <translation>&amp;Alles auswählen</translation>
    </message>
    <message>
        <source>C&amp;olumns</source>
        <translation>S&amp;palten</translation>
    </message>
    <message>
        <source>Sums of the list</source>
        <translation>Summen der Liste</translation>
    </message>
    <message>
        <source>Sums of the list: %1</source>
        <translation>Summen der Liste: %1</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no bandwidth: type 12.5k, 10 kHz or 12500 Hz</source>
        <translation>„%1“ ist keine Bandbreite: 12.5k, 10 kHz oder 12500 Hz eingeben</translation>
    </message>
    <message>
        <source>A bandwidth of %1 cannot be cut: 10 Hz to %2</source>
        <translation>Eine Bandbreite von %1 lässt sich nicht schneiden: 10 Hz bis %2</translation>
    </message>
    <message>
        <source>%1 is outside the recording</source>
        <translation>%1 liegt außerhalb der Aufnahme</translation>
    </message>
    <message>
        <source>&amp;Is it %1?</source>
        <translation>&amp;Wohl %1?</translation>
    </message>
    <message>
        <source>%1: is it %2?</source>
        <translation>%1: ist %2 gemeint?</translation>
    </message>
    <message>
        <source>Open Recording</source>
        <translation>Aufnahme öffnen</translation>
    </message>
    <message>
        <source>Entries that no output can come of: %1. The first of them:
%2

Edit or delete them, then save again.</source>
        <translation>Einträge, aus denen keine Ausgabe werden kann: %1. Der erste davon:
%2

Bitte bearbeiten oder löschen, dann erneut speichern.</translation>
    </message>
    <message>
        <source>Stopping, waiting for %1…</source>
        <translation>Hält an, wartet auf %1…</translation>
    </message>
    <message>
        <source>No answer from %1. Connect its disk, and the run goes on; Stop ends it.</source>
        <translation>Keine Antwort von %1. Mit dem Laufwerk geht der Lauf weiter; Stopp beendet ihn.</translation>
    </message>
    <message>
        <source>The run waits for a disk</source>
        <translation>Der Lauf wartet auf ein Laufwerk</translation>
    </message>
    <message>
        <source>No answer from %1, so the run cannot be stopped. It ends by itself when the disk is connected again. Close the program all the same? The files of the run are left as they are, unfinished.</source>
        <translation>Keine Antwort von %1, daher kann der Lauf nicht angehalten werden. Er endet von selbst, wenn das Laufwerk wieder da ist. Das Programm trotzdem schließen? Die Dateien des Laufs bleiben unfertig liegen, wie sie sind.</translation>
    </message>
    <message>
        <source>All recordings</source>
        <translation>Alle Aufnahmen</translation>
    </message>
    <message>
        <source>SigMF recordings (*.sigmf-meta, …)</source>
        <translation>SigMF-Aufnahmen (*.sigmf-meta, …)</translation>
    </message>
    <message>
        <source>SDRangel files (*.sdriq)</source>
        <translation>SDRangel-Dateien (*.sdriq)</translation>
    </message>
    <message>
        <source>Raw samples (*.cf32, *.cs16, *.cu8, …)</source>
        <translation>Rohe Abtastwerte (*.cf32, *.cs16, *.cu8, …)</translation>
    </message>
    <message>
        <source>All files</source>
        <translation>Alle Dateien</translation>
    </message>
    <message>
        <source>sample type</source>
        <translation>Art der Abtastwerte</translation>
    </message>
    <message>
        <source>sample rate</source>
        <translation>Abtastrate</translation>
    </message>
    <message>
        <source>centre frequency</source>
        <translation>Mittenfrequenz</translation>
    </message>
    <message>
        <source>start</source>
        <translation>Beginn</translation>
    </message>
    <message>
        <source>With what was said of it, the recording cannot be read; see the log.</source>
        <translation>Mit dem, was dazu angegeben ist, kann die Aufnahme nicht gelesen werden; siehe Protokoll.</translation>
    </message>
    <message>
        <source>Not told by the file: %1</source>
        <translation>In der Datei steht nicht: %1</translation>
    </message>
    <message>
        <source>&amp;Give…</source>
        <translation>&amp;Werte angeben…</translation>
    </message>
    <message>
        <source>Repair Recording</source>
        <translation>Aufnahme reparieren</translation>
    </message>
    <message>
        <source>Damaged files: %1. The first of them:
%2</source>
        <translation>Beschädigte Dateien: %1. Die erste davon:
%2</translation>
    </message>
    <message>
        <source>Into a &amp;Folder…</source>
        <translation>In einen &amp;Ordner…</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>In &amp;Place</source>
        <translation>An Ort und &amp;Stelle</translation>
    </message>
    <message>
        <source>Only the head is written to; its old bytes stand beside the file meanwhile</source>
        <translation>Nur in den Kopf wird geschrieben; seine alten Bytes stehen solange neben der Datei</translation>
    </message>
    <message>
        <source>Damaged: %1</source>
        <translation>Beschädigt: %1</translation>
    </message>
    <message>
        <source>Damaged files: %1. The first of them: %2</source>
        <translation>Beschädigte Dateien: %1. Die erste davon: %2</translation>
    </message>
    <message>
        <source>Repair…</source>
        <translation>Reparieren…</translation>
    </message>
    <message>
        <source>Select the folder for the repaired files</source>
        <translation>Ordner für die reparierten Dateien wählen</translation>
    </message>
    <message>
        <source>Files repaired: %1</source>
        <translation>Reparierte Dateien: %1</translation>
    </message>
</context>
<context>
    <name>carvello::CFactsDlg</name>
    <message>
        <source>%1-bit integers, signed</source>
        <translation>Ganzzahlen mit %1 Bit, mit Vorzeichen</translation>
    </message>
    <message>
        <source>%1-bit integers, unsigned</source>
        <translation>Ganzzahlen mit %1 Bit, ohne Vorzeichen</translation>
    </message>
    <message>
        <source>%1-bit floats</source>
        <translation>Gleitkommazahlen mit %1 Bit</translation>
    </message>
    <message>
        <source>%1, big-endian</source>
        <translation>%1, Big-Endian</translation>
    </message>
    <message>
        <source>Facts of the Recording</source>
        <translation>Angaben zur Aufnahme</translation>
    </message>
    <message>
        <source>for example 2.4 MHz</source>
        <translation>zum Beispiel 2.4 MHz</translation>
    </message>
    <message>
        <source>for example 7.1 MHz</source>
        <translation>zum Beispiel 7.1 MHz</translation>
    </message>
    <message>
        <source>UTC</source>
        <translation>UTC</translation>
    </message>
    <message>
        <source>Local time</source>
        <translation>Ortszeit</translation>
    </message>
    <message>
        <source>Sample &amp;rate:</source>
        <translation>Abtast&amp;rate:</translation>
    </message>
    <message>
        <source>&amp;Centre frequency:</source>
        <translation>&amp;Mittenfrequenz:</translation>
    </message>
    <message>
        <source>&amp;Start:</source>
        <translation>&amp;Beginn:</translation>
    </message>
    <message>
        <source>Time zone of the start</source>
        <translation>Zeitzone des Beginns</translation>
    </message>
    <message>
        <source>Hours and minutes ahead of UTC can be typed, for example +02:00</source>
        <translation>Stunden und Minuten vor UTC können eingegeben werden, zum Beispiel +02:00</translation>
    </message>
    <message>
        <source>Sample &amp;type:</source>
        <translation>&amp;Art der Abtastwerte:</translation>
    </message>
    <message>
        <source>What the files tell is filled in. A field that is emptied is left to them.</source>
        <translation>Was die Dateien sagen, ist eingetragen. Ein Feld, das geleert wird, bleibt ihnen überlassen.</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>As the file tells</source>
        <translation>Wie die Datei sagt</translation>
    </message>
    <message>
        <source>The files do not tell it.</source>
        <translation>Die Dateien sagen es nicht.</translation>
    </message>
    <message>
        <source>No sample rate. Accepted: for example 2.4 MHz, 250k or 48000 Hz</source>
        <translation>Keine Abtastrate. Möglich: zum Beispiel 2.4 MHz, 250k oder 48000 Hz</translation>
    </message>
    <message>
        <source>No frequency. Accepted: for example 7.1 MHz, 7100 kHz or 10.489G</source>
        <translation>Keine Frequenz. Möglich: zum Beispiel 7.1 MHz, 7100 kHz oder 10.489G</translation>
    </message>
    <message>
        <source>No time zone. Accepted: %1, %2 or hours and minutes ahead of UTC, for example +02:00</source>
        <translation>Keine Zeitzone. Möglich: %1, %2 oder Stunden und Minuten vor UTC, zum Beispiel +02:00</translation>
    </message>
    <message>
        <source>No date and time. Accepted: for example 2026-11-21 12:00:00, with decimals if wanted</source>
        <translation>Kein Datum mit Uhrzeit. Möglich: zum Beispiel 2026-11-21 12:00:00, auch mit Dezimalen</translation>
    </message>
</context>
<context>
    <name>carvello::CFrequencyAxis</name>
    <message>
        <source>MHz</source>
        <translation>MHz</translation>
    </message>
</context>
<context>
    <name>carvello::CJobMenu</name>
    <message>
        <source>&amp;Open…</source>
        <translation>Ö&amp;ffnen…</translation>
    </message>
    <message>
        <source>Open &amp;Recent</source>
        <translation>&amp;Zuletzt geöffnete</translation>
    </message>
    <message>
        <source>&amp;Earlier Lists</source>
        <translation>Frühere &amp;Listen</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>&amp;Speichern</translation>
    </message>
    <message>
        <source>Save &amp;As…</source>
        <translation>Speichern &amp;unter…</translation>
    </message>
    <message>
        <source>&amp;Undo</source>
        <translation>&amp;Rückgängig</translation>
    </message>
    <message>
        <source>Re&amp;do</source>
        <translation>&amp;Wiederholen</translation>
    </message>
    <message>
        <source>Count &amp;Frames in RF64 Files</source>
        <translation>&amp;Frames in RF64-Dateien zählen</translation>
    </message>
    <message>
        <source>RF64 files tell their samples in frames, as most programs expect, not in single values</source>
        <translation>RF64-Dateien nennen ihre Abtastwerte in Frames, wie die meisten Programme es erwarten, nicht in Einzelwerten</translation>
    </message>
    <message>
        <source>&amp;Keep Lists by Themselves</source>
        <translation>Listen von selbst be&amp;halten</translation>
    </message>
    <message>
        <source>None</source>
        <translation>Keine</translation>
    </message>
    <message>
        <source>%1: %2, entries: %3</source>
        <translation>%1: %2, Einträge: %3</translation>
    </message>
    <message>
        <source>Waiting for %1…</source>
        <translation>Wartet auf %1…</translation>
    </message>
    <message>
        <source>&amp;Correct Facts of the Recording…</source>
        <translation>&amp;Angaben zur Aufnahme berichtigen…</translation>
    </message>
    <message>
        <source>Say what its files do not tell, or tell wrongly: rate, centre, start and time zone, type</source>
        <translation>Angeben, was ihre Dateien nicht oder falsch sagen: Rate, Mitte, Beginn und Zeitzone, Art</translation>
    </message>
    <message>
        <source>A&amp;bout Carvello…</source>
        <translation>Ü&amp;ber Carvello…</translation>
    </message>
</context>
<context>
    <name>carvello::CLevelAxis</name>
    <message>
        <source>dBFS</source>
        <translation>dBFS</translation>
    </message>
</context>
<context>
    <name>carvello::CLevelScale</name>
    <message>
        <source>dBFS</source>
        <translation>dBFS</translation>
    </message>
</context>
<context>
    <name>carvello::CLogList</name>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Kopieren</translation>
    </message>
    <message>
        <source>Select &amp;All</source>
        <translation>&amp;Alles auswählen</translation>
    </message>
</context>
<context>
    <name>carvello::CMyMFCEditBrowseCtrl</name>
    <message>
        <source>Open</source>
        <translation>Öffnen</translation>
    </message>
    <message>
        <source>Browse for a file</source>
        <translation>Eine Datei suchen</translation>
    </message>
    <message>
        <source>Browse for a folder</source>
        <translation>Einen Ordner suchen</translation>
    </message>
</context>
<context>
    <name>carvello::CMyMFCMaskedEdit</name>
    <message>
        <source>&amp;Undo</source>
        <translation>&amp;Rückgängig</translation>
    </message>
    <message>
        <source>Cu&amp;t</source>
        <translation>&amp;Ausschneiden</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Kopieren</translation>
    </message>
    <message>
        <source>&amp;Paste</source>
        <translation>&amp;Einfügen</translation>
    </message>
    <message>
        <source>Select &amp;All</source>
        <translation>&amp;Alles auswählen</translation>
    </message>
</context>
<context>
    <name>carvello::CMyRichEditCtrl</name>
    <message>
        <source>Carvello Help</source>
        <translation>Hilfe zu Carvello</translation>
    </message>
    <message>
        <source>Help text</source>
        <translation>Hilfetext</translation>
    </message>
</context>
<context>
    <name>carvello::COfferStrip</name>
    <message>
        <source>Leave it as it is</source>
        <translation>Alles lassen, wie es ist</translation>
    </message>
    <message>
        <source>Dismiss</source>
        <translation>Verwerfen</translation>
    </message>
</context>
<context>
    <name>carvello::COutcomeLabel</name>
    <message>
        <source>Outcome</source>
        <translation>Ergebnis</translation>
    </message>
    <message>
        <source>Outcome: %1</source>
        <translation>Ergebnis: %1</translation>
    </message>
</context>
<context>
    <name>carvello::CPartChoice</name>
    <message>
        <source>%1 wide</source>
        <translation>%1 breit</translation>
    </message>
    <message>
        <source>Part:</source>
        <translation>Teil:</translation>
    </message>
    <message>
        <source>Part of the recording</source>
        <translation>Teil der Aufnahme</translation>
    </message>
    <message>
        <source>The recording has several parts, which are cut one by one</source>
        <translation>Die Aufnahme hat mehrere Teile, die einzeln geschnitten werden</translation>
    </message>
</context>
<context>
    <name>carvello::CSignalList</name>
    <message>
        <source>MHz</source>
        <translation>MHz</translation>
    </message>
    <message>
        <source>Width</source>
        <translation>Breite</translation>
    </message>
    <message>
        <source>dB</source>
        <translation>dB</translation>
    </message>
    <message>
        <source>Stopped</source>
        <translation>Angehalten</translation>
    </message>
    <message>
        <source>Looking…</source>
        <translation>Sucht…</translation>
    </message>
    <message>
        <source>Looking… %1 %</source>
        <translation>Sucht… %1 %</translation>
    </message>
    <message>
        <source>Nothing stands out of the noise</source>
        <translation>Nichts ragt aus dem Rauschen</translation>
    </message>
    <message>
        <source>1 signal found</source>
        <translation>1 Signal gefunden</translation>
    </message>
    <message>
        <source>%1 signals found</source>
        <translation>%1 Signale gefunden</translation>
    </message>
    <message>
        <source>Stop searchin&amp;g</source>
        <translation>Suche &amp;beenden</translation>
    </message>
    <message>
        <source>&amp;Find signals</source>
        <translation>Signale su&amp;chen</translation>
    </message>
</context>
<context>
    <name>carvello::CSpectrumLine</name>
    <message>
        <source>Average</source>
        <translation>Mittel</translation>
    </message>
    <message>
        <source>Peak</source>
        <translation>Spitze</translation>
    </message>
</context>
<context>
    <name>carvello::CSpectrumPlot</name>
    <message>
        <source>Spectrum line</source>
        <translation>Spektrumlinie</translation>
    </message>
    <message>
        <source>Waterfall</source>
        <translation>Wasserfall</translation>
    </message>
    <message>
        <source>Frequencies</source>
        <translation>Frequenzen</translation>
    </message>
    <message>
        <source>Drag to choose frequencies for the whole recording; double-click to show all</source>
        <translation>Ziehen wählt Frequenzen für die ganze Aufnahme; ein Doppelklick zeigt alles</translation>
    </message>
    <message>
        <source>Times</source>
        <translation>Zeiten</translation>
    </message>
    <message>
        <source>Drag to pan; double-click to show all</source>
        <translation>Ziehen verschiebt; ein Doppelklick zeigt alles</translation>
    </message>
    <message>
        <source>Levels of the line</source>
        <translation>Pegel der Linie</translation>
    </message>
    <message>
        <source>Scale of levels</source>
        <translation>Pegelskala</translation>
    </message>
    <message>
        <source>Drag the handles to set the levels of the colours; double-click for automatic levels</source>
        <translation>Die Griffe ziehen, um die Pegel der Farben zu stellen; ein Doppelklick stellt sie selbsttätig</translation>
    </message>
    <message>
        <source>How well the rows are known</source>
        <translation>Wie gut die Zeilen bekannt sind</translation>
    </message>
    <message>
        <source>Full: every sample was looked at. Dotted: some were. Empty: what is beside it stands in, or nothing is known</source>
        <translation>Voll: jeder Abtastwert wurde angesehen. Gepunktet: einige. Leer: was daneben ist, vertritt sie, oder nichts ist bekannt</translation>
    </message>
    <message>
        <source>Clock</source>
        <translation>Uhr</translation>
    </message>
    <message>
        <source>The clock that the times are of, as in the main window</source>
        <translation>Die Uhr, nach der die Zeiten gehen, wie im Hauptfenster</translation>
    </message>
    <message>
        <source>UTC</source>
        <translation>UTC</translation>
    </message>
    <message>
        <source>local</source>
        <translation>Ortszeit</translation>
    </message>
</context>
<context>
    <name>carvello::CSpectrumWindow</name>
    <message>
        <source>Spectrum - %1</source>
        <translation>Spektrum - %1</translation>
    </message>
    <message>
        <source>Spectrum</source>
        <translation>Spektrum</translation>
    </message>
    <message>
        <source>%1 · %2 points, %3 a bin</source>
        <translation>%1 · %2 Punkte, %3 je Kanal</translation>
    </message>
    <message>
        <source>No recording</source>
        <translation>Keine Aufnahme</translation>
    </message>
    <message>
        <source>Overview complete</source>
        <translation>Übersicht vollständig</translation>
    </message>
    <message>
        <source>Job runs, overview %1 %</source>
        <translation>Auftrag läuft, Übersicht %1 %</translation>
    </message>
    <message>
        <source>Overview %1 %</source>
        <translation>Übersicht %1 %</translation>
    </message>
    <message>
        <source>Drag over the waterfall</source>
        <translation>Über den Wasserfall ziehen</translation>
    </message>
    <message>
        <source>. To be added after the run</source>
        <translation>. Kann nach dem Lauf hinzugefügt werden</translation>
    </message>
    <message>
        <source>. Choose an output folder to add it</source>
        <translation>. Zum Hinzufügen einen Ausgabeordner wählen</translation>
    </message>
    <message>
        <source>What is to be cut: %1</source>
        <translation>Was geschnitten wird: %1</translation>
    </message>
</context>
<context>
    <name>carvello::CWaitPanel</name>
    <message>
        <source>Waiting for %1…</source>
        <translation>Wartet auf %1…</translation>
    </message>
    <message>
        <source>Give up</source>
        <translation>Aufgeben</translation>
    </message>
    <message>
        <source>No answer from %1</source>
        <translation>Keine Antwort von %1</translation>
    </message>
    <message>
        <source>Try again</source>
        <translation>Noch einmal versuchen</translation>
    </message>
    <message>
        <source>Stop waiting for the disk or the network, also with Esc</source>
        <translation>Nicht mehr auf das Laufwerk oder das Netz warten, auch mit Esc</translation>
    </message>
    <message>
        <source>Read it again</source>
        <translation>Neu lesen</translation>
    </message>
</context>
<context>
    <name>carvello::CWaterfallView</name>
    <message>
        <source>Waterfall</source>
        <translation>Wasserfall</translation>
    </message>
    <message>
        <source>Waterfall: %1</source>
        <translation>Wasserfall: %1</translation>
    </message>
    <message>
        <source>Reading the recording…</source>
        <translation>Die Aufnahme wird gelesen…</translation>
    </message>
    <message>
        <source>Hatched: not read yet. %1 % known</source>
        <translation>Schraffiert: noch nicht gelesen. %1 % bekannt</translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <source>Cuts narrow-band IQ recordings out of a wide-band one.</source>
        <translation>Schneidet schmalbandige IQ-Aufnahmen aus einer breitbandigen.</translation>
    </message>
    <message>
        <source>The recording or the job file to open.</source>
        <translation>Die Aufnahme oder Jobdatei, die geöffnet wird.</translation>
    </message>
</context>
</TS>
