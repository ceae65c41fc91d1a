<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>AdoptDialog</name>
    <message>
        <source>Use existing game files</source>
        <translation>Vorhandene Spieldateien verwenden</translation>
    </message>
    <message>
        <source>Game files that are on this machine already, from an older installation or from a copied disk, need not be downloaded. Name the folder that they are in: whatever matches is taken over, under whatever names. Nothing in the folder is changed.</source>
        <translation>Spieldateien, die schon auf diesem Rechner liegen, aus einer älteren Installation oder von einer kopierten Festplatte, müssen nicht heruntergeladen werden. Geben Sie den Ordner an, in dem sie liegen: Was passt, wird übernommen, wie immer es heißt. In dem Ordner wird nichts verändert.</translation>
    </message>
    <message>
        <source>&amp;Folder:</source>
        <translation>&amp;Ordner:</translation>
    </message>
    <message>
        <source>&amp;Browse...</source>
        <translation>&amp;Durchsuchen...</translation>
    </message>
    <message>
        <source>&amp;Link files instead of copying them</source>
        <translation>Dateien &amp;verknüpfen statt kopieren</translation>
    </message>
    <message>
        <source>They take no more room then, where both folders are on one disk</source>
        <translation>Sie brauchen dann keinen weiteren Platz, wenn beide Ordner auf einer Festplatte liegen</translation>
    </message>
    <message>
        <source>Linked files are shared: do not play from the old folder any more, nor change files in it. It may be deleted.</source>
        <translation>Verknüpfte Dateien werden geteilt: Spielen Sie nicht mehr aus dem alten Ordner, und ändern Sie keine Dateien darin. Er darf gelöscht werden.</translation>
    </message>
    <message>
        <source>&amp;Use these files</source>
        <translation>Diese Dateien ver&amp;wenden</translation>
    </message>
    <message>
        <source>Folder with game files</source>
        <translation>Ordner mit Spieldateien</translation>
    </message>
    <message>
        <source>There is no such folder.</source>
        <translation>Einen solchen Ordner gibt es nicht.</translation>
    </message>
    <message>
        <source>The folder cannot be read.</source>
        <translation>Der Ordner kann nicht gelesen werden.</translation>
    </message>
    <message>
        <source>That folder is, or contains, the launcher&apos;s own shared cache.</source>
        <translation>Dieser Ordner ist oder enthält den gemeinsamen Cache des Launchers.</translation>
    </message>
</context>
<context>
    <name>BundleUnpacker</name>
    <message>
        <source>Unpacking %1 of %2 files (%3)</source>
        <translation>Entpacken: %1 von %2 Dateien (%3)</translation>
    </message>
</context>
<context>
    <name>CacheMover</name>
    <message>
        <source>The settings cannot be written</source>
        <translation>Die Einstellungen können nicht geschrieben werden</translation>
    </message>
    <message>
        <source>Please choose a folder</source>
        <translation>Bitte wählen Sie einen Ordner</translation>
    </message>
    <message>
        <source>There is no cache to move</source>
        <translation>Es gibt keinen Cache, der verschoben werden könnte</translation>
    </message>
    <message>
        <source>The new folder must not lie in the old one, nor the old one in it</source>
        <translation>Der neue Ordner darf nicht im alten liegen und der alte nicht im neuen</translation>
    </message>
    <message>
        <source>%1 is not empty</source>
        <translation>%1 ist nicht leer</translation>
    </message>
    <message>
        <source>%1 cannot be written to</source>
        <translation>In %1 kann nicht geschrieben werden</translation>
    </message>
    <message>
        <source>The cache is in use: please wait until the update has ended</source>
        <translation>Der Cache ist in Benutzung: bitte warten Sie, bis die Aktualisierung beendet ist</translation>
    </message>
    <message>
        <source>%1 are needed, but only %2 are free</source>
        <translation>%1 werden gebraucht, aber nur %2 sind frei</translation>
    </message>
    <message>
        <source>Copying the cache</source>
        <translation>Der Cache wird kopiert</translation>
    </message>
    <message>
        <source>Comparing the copy</source>
        <translation>Die Kopie wird verglichen</translation>
    </message>
    <message>
        <source>Removing the old folder</source>
        <translation>Der alte Ordner wird entfernt</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>%1 was not copied correctly</source>
        <translation>%1 wurde nicht richtig kopiert</translation>
    </message>
</context>
<context>
    <name>ConnectionChecker</name>
    <message numerus="yes">
        <source>No answer within %n second(s)</source>
        <translation>
            <numerusform>Keine Antwort innerhalb von %n Sekunde</numerusform>
            <numerusform>Keine Antwort innerhalb von %n Sekunden</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Copier</name>
    <message>
        <source>Copying files</source>
        <translation>Dateien werden kopiert</translation>
    </message>
    <message>
        <source>Verifying files</source>
        <translation>Dateien werden geprüft</translation>
    </message>
</context>
<context>
    <name>CustomWebPage</name>
    <message>
        <source>Ready</source>
        <translation>Bereit</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Fehler</translation>
    </message>
</context>
<context>
    <name>Diagnostics</name>
    <message>
        <source>Certificate error</source>
        <translation>Zertifikatsfehler</translation>
    </message>
    <message>
        <source>A certificate error has occurred:

%1

%2
</source>
        <translation>Ein Zertifikatsfehler ist aufgetreten:

%1

%2
</translation>
    </message>
    <message>
        <source>%1 in %2 s, %3/s</source>
        <translation>%1 in %2 s, %3/s</translation>
    </message>
    <message>
        <source>Failed after %1: %2</source>
        <translation>Fehlgeschlagen nach %1: %2</translation>
    </message>
    <message>
        <source>Velkor Launcher %1, %2, %3
%4</source>
        <translation>Velkor Launcher %1, %2, %3
%4</translation>
    </message>
    <message>
        <source>Download</source>
        <translation>Download</translation>
    </message>
    <message>
        <source>Cache</source>
        <translation>Cache</translation>
    </message>
    <message>
        <source>Route</source>
        <translation>Weg</translation>
    </message>
</context>
<context>
    <name>DiagnosticsDialog</name>
    <message>
        <source>Network diagnostics</source>
        <translation>Netzwerkdiagnose</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Fortschritt</translation>
    </message>
    <message>
        <source>Results</source>
        <translation>Ergebnisse</translation>
    </message>
    <message>
        <source>&amp;Run again</source>
        <translation>&amp;Wiederholen</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Kopieren</translation>
    </message>
    <message>
        <source>&amp;Save...</source>
        <translation>&amp;Speichern...</translation>
    </message>
    <message>
        <source>Looking at the network and the disk. This takes some seconds.</source>
        <translation>Netzwerk und Festplatte werden untersucht. Das dauert einige Sekunden.</translation>
    </message>
    <message>
        <source>All hosts can be reached.</source>
        <translation>Alle Server sind erreichbar.</translation>
    </message>
    <message>
        <source>%1 of %2 hosts make trouble.</source>
        <translation>%1 von %2 Servern machen Schwierigkeiten.</translation>
    </message>
    <message>
        <source>Save the results</source>
        <translation>Ergebnisse speichern</translation>
    </message>
    <message>
        <source>Text files (*.txt)</source>
        <translation>Textdateien (*.txt)</translation>
    </message>
    <message>
        <source>Saved.</source>
        <translation>Gespeichert.</translation>
    </message>
    <message>
        <source>%1 could not be written: %2</source>
        <translation>%1 konnte nicht geschrieben werden: %2</translation>
    </message>
</context>
<context>
    <name>DownloadControl</name>
    <message>
        <source>Paused</source>
        <translation>Angehalten</translation>
    </message>
    <message>
        <source>Waiting until no client runs</source>
        <translation>Wartet, bis kein Client läuft</translation>
    </message>
</context>
<context>
    <name>DownloadFromIndexTask</name>
    <message>
        <source>Not enough room in %1: %2 needed, %3 free</source>
        <translation>Nicht genug Platz in %1: %2 werden gebraucht, %3 sind frei</translation>
    </message>
    <message>
        <source>Looking for files in %1</source>
        <translation>Dateien werden gesucht in %1</translation>
    </message>
</context>
<context>
    <name>DownloadPlanDialog</name>
    <message>
        <source>Download for %1</source>
        <translation>Download für %1</translation>
    </message>
    <message>
        <source>There does not seem to be enough room for %1.</source>
        <translation>Für %1 scheint nicht genug Platz zu sein.</translation>
    </message>
    <message>
        <source>%1 is about to be downloaded.</source>
        <translation>%1 wird gleich heruntergeladen.</translation>
    </message>
    <message>
        <source>To be downloaded:</source>
        <translation>Herunterzuladen:</translation>
    </message>
    <message>
        <source>There already:</source>
        <translation>Schon da:</translation>
    </message>
    <message>
        <source>Room needed:</source>
        <translation>Benötigter Platz:</translation>
    </message>
    <message>
        <source>Room left:</source>
        <translation>Freier Platz:</translation>
    </message>
    <message>
        <source>not known</source>
        <translation>unbekannt</translation>
    </message>
    <message>
        <source>Folder:</source>
        <translation>Ordner:</translation>
    </message>
    <message>
        <source>The figure may be wrong, for example where the file system compresses files or where it makes room by itself. A download that finds no room stops; nothing is lost.</source>
        <translation>Die Angabe kann falsch sein, zum Beispiel wenn das Dateisystem Dateien komprimiert oder von selbst Platz schafft. Ein Download, der keinen Platz findet, bricht ab; es geht nichts verloren.</translation>
    </message>
    <message>
        <source>&quot;Not now&quot; pauses downloads until you resume them.</source>
        <translation>„Nicht jetzt“ hält Downloads an, bis Sie sie fortsetzen.</translation>
    </message>
    <message>
        <source>C&amp;ontinue anyway</source>
        <translation>Tr&amp;otzdem fortfahren</translation>
    </message>
    <message>
        <source>&amp;Download</source>
        <translation>&amp;Herunterladen</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>Abbre&amp;chen</translation>
    </message>
    <message>
        <source>&amp;Not now</source>
        <translation>&amp;Nicht jetzt</translation>
    </message>
    <message>
        <source>Files:</source>
        <translation>Dateien:</translation>
    </message>
    <message>
        <source>Without an answer the update is put off in %1 s.</source>
        <translation>Ohne Antwort wird das Update in %1 s verschoben.</translation>
    </message>
    <message>
        <source>It begins by itself in %1 s.</source>
        <translation>Er beginnt von selbst in %1 s.</translation>
    </message>
</context>
<context>
    <name>LaunchOptions</name>
    <message>
        <source>The launch command has a quotation mark without its counterpart: %1</source>
        <translation>Im Startbefehl fehlt ein Anführungszeichen: %1</translation>
    </message>
    <message>
        <source>The program of the launch command cannot be found: %1</source>
        <translation>Das Programm des Startbefehls ist nicht zu finden: %1</translation>
    </message>
    <message>
        <source>An environment variable has to be written as NAME=value: %1</source>
        <translation>Eine Umgebungsvariable muss als NAME=Wert geschrieben werden: %1</translation>
    </message>
    <message>
        <source>The launcher needs the environment variable %1 itself</source>
        <translation>Die Umgebungsvariable %1 braucht der Launcher selbst</translation>
    </message>
</context>
<context>
    <name>LaunchOptionsDialog</name>
    <message>
        <source>Launch options</source>
        <translation>Startoptionen</translation>
    </message>
    <message>
        <source>&amp;Command in front of Wine:</source>
        <translation>&amp;Befehl vor Wine:</translation>
    </message>
    <message>
        <source>For example &quot;gamemoderun&quot; or &quot;gamescope -f --&quot;. Leave it empty to start the game as usual.</source>
        <translation>Zum Beispiel „gamemoderun“ oder „gamescope -f --“. Leer startet das Spiel wie üblich.</translation>
    </message>
    <message>
        <source>&amp;Server:</source>
        <translation>&amp;Server:</translation>
    </message>
    <message>
        <source>&amp;Environment variables of its clients, one on each line:</source>
        <translation>&amp;Umgebungsvariablen seiner Clients, eine je Zeile:</translation>
    </message>
</context>
<context>
    <name>LogDialog</name>
    <message>
        <source>Log - Velkor Launcher</source>
        <translation>Protokoll - Velkor Launcher</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Kopieren</translation>
    </message>
    <message>
        <source>The selected lines, or all that are shown</source>
        <translation>Die ausgewählten Zeilen oder alle, die zu sehen sind</translation>
    </message>
    <message>
        <source>Everything</source>
        <translation>Alles</translation>
    </message>
    <message>
        <source>Notes and worse</source>
        <translation>Hinweise und Schlimmeres</translation>
    </message>
    <message>
        <source>Warnings and worse</source>
        <translation>Warnungen und Schlimmeres</translation>
    </message>
    <message>
        <source>Errors</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>Level</source>
        <translation>Stufe</translation>
    </message>
    <message>
        <source>&amp;Show:</source>
        <translation>&amp;Anzeigen:</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Suchen</translation>
    </message>
    <message>
        <source>Log</source>
        <translation>Protokoll</translation>
    </message>
    <message>
        <source>%1 of %2 lines</source>
        <translation>%1 von %2 Zeilen</translation>
    </message>
    <message>
        <source>The log file cannot be read: %1</source>
        <translation>Die Protokolldatei kann nicht gelesen werden: %1</translation>
    </message>
</context>
<context>
    <name>LogModel</name>
    <message>
        <source>%1 (Repeated %2 times)</source>
        <translation>%1 (%2-mal wiederholt)</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Zeit</translation>
    </message>
    <message>
        <source>Level</source>
        <translation>Stufe</translation>
    </message>
    <message>
        <source>Category</source>
        <translation>Kategorie</translation>
    </message>
    <message>
        <source>Message</source>
        <translation>Meldung</translation>
    </message>
    <message>
        <source>Process</source>
        <translation>Prozess</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Velkor Launcher - version %1</source>
        <translation>Velkor Launcher - Version %1</translation>
    </message>
    <message>
        <source>&amp;Server list</source>
        <translation>&amp;Serverliste</translation>
    </message>
    <message>
        <source>Server list - Velkor Launcher</source>
        <translation>Serverliste - Velkor Launcher</translation>
    </message>
    <message>
        <source>Se&amp;ttings...</source>
        <translation>E&amp;instellungen...</translation>
    </message>
    <message>
        <source>Shared &amp;Cache...</source>
        <translation>Gemeinsamer &amp;Cache...</translation>
    </message>
    <message>
        <source>C&amp;lient Settings...</source>
        <translation>C&amp;lient-Einstellungen...</translation>
    </message>
    <message>
        <source>Start LogLens</source>
        <translation>LogLens starten</translation>
    </message>
    <message>
        <source>&amp;Network diagnostics...</source>
        <translation>&amp;Netzwerkdiagnose...</translation>
    </message>
    <message>
        <source>Show in File Browser</source>
        <translation>Im Dateimanager zeigen</translation>
    </message>
    <message>
        <source>Launcher logs</source>
        <translation>Protokolle des Launchers</translation>
    </message>
    <message>
        <source>Shared cache</source>
        <translation>Gemeinsamer Cache</translation>
    </message>
    <message>
        <source>&amp;Refresh</source>
        <translation>&amp;Aktualisieren</translation>
    </message>
    <message>
        <source>About...</source>
        <translation>Über...</translation>
    </message>
    <message>
        <source>E&amp;xit</source>
        <translation>&amp;Beenden</translation>
    </message>
    <message>
        <source>%1 (%2 %)</source>
        <translation>%1 (%2 %)</translation>
    </message>
    <message>
        <source>The client for %1 is running</source>
        <translation>Der Client für %1 läuft</translation>
    </message>
    <message>
        <source>The client for %1 has crashed</source>
        <translation>Der Client für %1 ist abgestürzt</translation>
    </message>
    <message>
        <source>The client for %1 has ended with exit code %2</source>
        <translation>Der Client für %1 hat sich mit dem Code %2 beendet</translation>
    </message>
    <message>
        <source>About</source>
        <translation>Über</translation>
    </message>
    <message>
        <source>Velkor Launcher</source>
        <translation>Velkor Launcher</translation>
    </message>
    <message>
        <source>Version %1
Toolkit %2
Shared cache: %3</source>
        <translation>Version %1
Toolkit %2
Gemeinsamer Cache: %3</translation>
    </message>
    <message>
        <source>Checking hosts</source>
        <translation>Server werden geprüft</translation>
    </message>
    <message>
        <source>Connection error</source>
        <translation>Verbindungsfehler</translation>
    </message>
    <message>
        <source>Could not connect to %1: %2</source>
        <translation>Keine Verbindung zu %1: %2</translation>
    </message>
    <message>
        <source>Connection error: %1</source>
        <translation>Verbindungsfehler: %1</translation>
    </message>
    <message>
        <source>%1 (and %2 more)</source>
        <translation>%1 (und %2 weitere)</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>Cache folder does not exist and could not be created at {1}</source>
        <translation>Der Cache-Ordner existiert nicht und konnte in {1} nicht angelegt werden</translation>
    </message>
    <message>
        <source>Checking Wine</source>
        <translation>Wine wird geprüft</translation>
    </message>
    <message>
        <source>Wine could not be updated: %1</source>
        <translation>Wine konnte nicht aktualisiert werden: %1</translation>
    </message>
    <message>
        <source>%1 (at %2)</source>
        <translation>%1 (um %2)</translation>
    </message>
    <message>
        <source>Looking for updates</source>
        <translation>Nach Aktualisierungen wird gesucht</translation>
    </message>
    <message>
        <source>Everything is up to date. Last checked at %1.</source>
        <translation>Alles ist aktuell. Zuletzt geprüft um %1.</translation>
    </message>
    <message>
        <source>An update is running: please wait until it has ended</source>
        <translation>Eine Aktualisierung läuft: bitte warten Sie, bis sie beendet ist</translation>
    </message>
    <message>
        <source>Client Settings</source>
        <translation>Client-Einstellungen</translation>
    </message>
    <message>
        <source>You have settings profiles for the client. Do you want to copy them to another server?</source>
        <translation>Sie haben Einstellungsprofile für den Client. Möchten Sie sie auf einen anderen Server kopieren?</translation>
    </message>
    <message>
        <source>Downloads are paused.</source>
        <translation>Downloads sind angehalten.</translation>
    </message>
    <message>
        <source>Downloads wait until no client runs.</source>
        <translation>Downloads warten, bis kein Client läuft.</translation>
    </message>
    <message>
        <source>Downloads go on.</source>
        <translation>Downloads gehen weiter.</translation>
    </message>
    <message>
        <source>What is missing is taken from %1 where it is there.</source>
        <translation>Was fehlt, wird aus %1 genommen, soweit es dort liegt.</translation>
    </message>
    <message>
        <source>Files that need not be downloaded: %1 (%2)</source>
        <translation>Dateien, die nicht heruntergeladen werden müssen: %1 (%2)</translation>
    </message>
</context>
<context>
    <name>MigrateSettingsGui</name>
    <message>
        <source>Client Settings</source>
        <translation>Client-Einstellungen</translation>
    </message>
    <message>
        <source>&amp;From</source>
        <translation>&amp;Von</translation>
    </message>
    <message>
        <source>C&amp;opy &gt;</source>
        <translation>K&amp;opieren &gt;</translation>
    </message>
    <message>
        <source>Copies the profile on the left to the server on the right</source>
        <translation>Kopiert das Profil links auf den Server rechts</translation>
    </message>
    <message>
        <source>&amp;To</source>
        <translation>&amp;Nach</translation>
    </message>
    <message>
        <source>&amp;New...</source>
        <translation>Ne&amp;u...</translation>
    </message>
    <message>
        <source>Makes a profile that starts as a copy of the one on the left</source>
        <translation>Legt ein Profil an, das als Kopie des linken beginnt</translation>
    </message>
    <message>
        <source>&amp;Rename...</source>
        <translation>Um&amp;benennen...</translation>
    </message>
    <message>
        <source>&amp;Delete...</source>
        <translation>&amp;Löschen...</translation>
    </message>
    <message>
        <source>Profiles</source>
        <translation>Profile</translation>
    </message>
    <message>
        <source>Name of the profile:</source>
        <translation>Name des Profils:</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
    <message>
        <source>%1 from %2</source>
        <translation>%1 von %2</translation>
    </message>
    <message>
        <source>%1 has been copied to %2.</source>
        <translation>%1 wurde auf %2 kopiert.</translation>
    </message>
    <message>
        <source>New profile</source>
        <translation>Neues Profil</translation>
    </message>
    <message>
        <source>%1 has been made.</source>
        <translation>%1 wurde angelegt.</translation>
    </message>
    <message>
        <source>Rename</source>
        <translation>Umbenennen</translation>
    </message>
    <message>
        <source>%1 is called %2 now.</source>
        <translation>%1 heißt jetzt %2.</translation>
    </message>
    <message>
        <source>Do you want to delete the profile %1 of %2? Its settings are lost then.</source>
        <translation>Möchten Sie das Profil %1 von %2 löschen? Seine Einstellungen gehen dann verloren.</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>%1 has been deleted.</source>
        <translation>%1 wurde gelöscht.</translation>
    </message>
</context>
<context>
    <name>QueueProgress</name>
    <message>
        <source>%1 of %2 files (%3)</source>
        <translation>%1 von %2 Dateien (%3)</translation>
    </message>
</context>
<context>
    <name>ReportBundle</name>
    <message>
        <source>The report could not be made: %1</source>
        <translation>Der Bericht konnte nicht erstellt werden: %1</translation>
    </message>
    <message>
        <source>%1 could not be written: %2</source>
        <translation>%1 konnte nicht geschrieben werden: %2</translation>
    </message>
</context>
<context>
    <name>ReportDialog</name>
    <message>
        <source>Report for the support</source>
        <translation>Bericht für den Support</translation>
    </message>
    <message>
        <source>This is what the report will hold. Sign-in tokens, your name and your home folder are left out of it. Untick what you do not want to share. Nothing is sent: you save the report as a file.</source>
        <translation>Das wird der Bericht enthalten. Anmeldedaten, Ihr Name und Ihr Benutzerordner bleiben draußen. Entfernen Sie das Häkchen bei allem, was Sie nicht teilen möchten. Es wird nichts gesendet: Sie speichern den Bericht als Datei.</translation>
    </message>
    <message>
        <source>Parts of the report</source>
        <translation>Teile des Berichts</translation>
    </message>
    <message>
        <source>Content of the part</source>
        <translation>Inhalt des Teils</translation>
    </message>
    <message>
        <source>Looking at the network and the disk. This takes some seconds.</source>
        <translation>Netzwerk und Festplatte werden untersucht. Das dauert einige Sekunden.</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Fortschritt</translation>
    </message>
    <message>
        <source>&amp;Save...</source>
        <translation>&amp;Speichern...</translation>
    </message>
    <message>
        <source>The report is ready to be saved.</source>
        <translation>Der Bericht kann gespeichert werden.</translation>
    </message>
    <message>
        <source>Save the report</source>
        <translation>Bericht speichern</translation>
    </message>
    <message>
        <source>Zip files (*.zip)</source>
        <translation>Zip-Dateien (*.zip)</translation>
    </message>
    <message>
        <source>Saved as %1.</source>
        <translation>Gespeichert als %1.</translation>
    </message>
    <message>
        <source>Nothing has been chosen.</source>
        <translation>Es ist nichts ausgewählt.</translation>
    </message>
</context>
<context>
    <name>ServerLine</name>
    <message>
        <source>Play on %1</source>
        <translation>Auf %1 spielen</translation>
    </message>
    <message>
        <source>Progress of %1</source>
        <translation>Fortschritt von %1</translation>
    </message>
    <message>
        <source>The client&apos;s settings profile</source>
        <translation>Das Einstellungsprofil des Clients</translation>
    </message>
    <message>
        <source>Settings profile of %1</source>
        <translation>Einstellungsprofil von %1</translation>
    </message>
    <message>
        <source>Ready</source>
        <translation>Bereit</translation>
    </message>
    <message>
        <source>Status not verified</source>
        <translation>Stand nicht geprüft</translation>
    </message>
    <message>
        <source>Checking...</source>
        <translation>Wird geprüft...</translation>
    </message>
</context>
<context>
    <name>ServerManager</name>
    <message>
        <source>Version info not available</source>
        <translation>Keine Versionsangaben verfügbar</translation>
    </message>
    <message>
        <source>Ready</source>
        <translation>Bereit</translation>
    </message>
    <message>
        <source>Must be logged in to %1 to get the build</source>
        <translation>Für diesen Stand müssen Sie bei %1 angemeldet sein</translation>
    </message>
    <message>
        <source>%1 client file-index not available</source>
        <translation>Das Dateiverzeichnis des Clients von %1 ist nicht verfügbar</translation>
    </message>
    <message>
        <source>Authentication is required to download %1 client</source>
        <translation>Für den Client von %1 ist eine Anmeldung nötig</translation>
    </message>
    <message>
        <source>Unknown error while trying to get %1 client file-index</source>
        <translation>Unbekannter Fehler beim Holen des Dateiverzeichnisses des Clients von %1</translation>
    </message>
    <message>
        <source>Index not available</source>
        <translation>Verzeichnis nicht verfügbar</translation>
    </message>
    <message>
        <source>Copying files</source>
        <translation>Dateien werden kopiert</translation>
    </message>
    <message>
        <source>Cannot copy files for %1 while clients are running</source>
        <translation>Die Dateien von %1 können nicht kopiert werden, solange Clients laufen</translation>
    </message>
    <message>
        <source>Error! See log for details</source>
        <translation>Fehler! Näheres steht im Protokoll</translation>
    </message>
    <message>
        <source>Not ready to play</source>
        <translation>Noch nicht spielbereit</translation>
    </message>
    <message>
        <source>Could not copy files for %1</source>
        <translation>Die Dateien von %1 konnten nicht kopiert werden</translation>
    </message>
    <message>
        <source>Client launch failure</source>
        <translation>Der Client konnte nicht gestartet werden</translation>
    </message>
    <message>
        <source>Wine is being updated. Please wait until that is done.</source>
        <translation>Wine wird gerade aktualisiert. Bitte warten Sie, bis das beendet ist.</translation>
    </message>
    <message>
        <source>Could not find file %1</source>
        <translation>Die Datei %1 wurde nicht gefunden</translation>
    </message>
</context>
<context>
    <name>Settings</name>
    <message>
        <source>Default</source>
        <translation>Vorgabe</translation>
    </message>
    <message>
        <source>Release</source>
        <translation>Veröffentlicht</translation>
    </message>
    <message>
        <source>Beta</source>
        <translation>Beta</translation>
    </message>
    <message>
        <source>Development</source>
        <translation>Entwicklung</translation>
    </message>
    <message>
        <source>The directory %1 that is set as the shared cache location does not exist and cannot be created. Do you want to revert to the default value (%2)?</source>
        <translation>Der Ordner %1, der als gemeinsamer Cache eingestellt ist, existiert nicht und kann nicht angelegt werden. Möchten Sie zur Vorgabe (%2) zurückkehren?</translation>
    </message>
    <message>
        <source>Warning</source>
        <translation>Warnung</translation>
    </message>
</context>
<context>
    <name>SettingsDialog</name>
    <message>
        <source>Latest</source>
        <translation>Neueste</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Launcher and clients</source>
        <translation>Launcher und Clients</translation>
    </message>
    <message>
        <source>&amp;Language:</source>
        <translation>&amp;Sprache:</translation>
    </message>
    <message>
        <source>Language of the launcher; all of it changes at the next start</source>
        <translation>Sprache des Launchers; ganz wechselt sie beim nächsten Start</translation>
    </message>
    <message>
        <source>&amp;Version type:</source>
        <translation>&amp;Versionsart:</translation>
    </message>
    <message>
        <source>Which releases of the launcher you get</source>
        <translation>Welche Versionen des Launchers Sie bekommen</translation>
    </message>
    <message>
        <source>&amp;Download everything:</source>
        <translation>Alles &amp;herunterladen:</translation>
    </message>
    <message>
        <source>Fetch all resources in advance instead of while you play</source>
        <translation>Alle Daten im Voraus holen statt während des Spiels</translation>
    </message>
    <message>
        <source>&amp;Run clients with logging:</source>
        <translation>Clients mit &amp;Protokoll starten:</translation>
    </message>
    <message>
        <source>Show the log live in LogLens while clients run</source>
        <translation>Das Protokoll live in LogLens zeigen, während Clients laufen</translation>
    </message>
    <message>
        <source>Run clients with D&amp;X9:</source>
        <translation>Clients mit D&amp;X9 starten:</translation>
    </message>
    <message>
        <source>For graphics hardware that has trouble with newer versions</source>
        <translation>Für Grafikkarten, die mit neueren Versionen Schwierigkeiten haben</translation>
    </message>
    <message>
        <source>Run clients with &amp;64 bit:</source>
        <translation>Clients mit &amp;64 Bit starten:</translation>
    </message>
    <message>
        <source>Start the client&apos;s 64-bit program</source>
        <translation>Das 64-Bit-Programm des Clients starten</translation>
    </message>
    <message>
        <source>&amp;Minimize to tray on close:</source>
        <translation>Beim Schließen ins &amp;Tray minimieren:</translation>
    </message>
    <message>
        <source>Closing the window leaves the launcher in the tray</source>
        <translation>Beim Schließen des Fensters bleibt der Launcher im Tray</translation>
    </message>
    <message>
        <source>&amp;Ignore certification errors:</source>
        <translation>&amp;Zertifikatsfehler ignorieren:</translation>
    </message>
    <message>
        <source>Go on where a server cannot prove who it is; only for networks that you know to be safe</source>
        <translation>Auch weitermachen, wenn ein Server nicht nachweisen kann, wer er ist; nur für Netze, von denen Sie wissen, dass sie sicher sind</translation>
    </message>
    <message>
        <source>Use system configuration for &amp;proxy:</source>
        <translation>Pr&amp;oxy des Systems benutzen:</translation>
    </message>
    <message>
        <source>Reach the network the way your system is set up to; takes effect at the next start</source>
        <translation>Das Netz so erreichen, wie Ihr System eingerichtet ist; wirkt beim nächsten Start</translation>
    </message>
    <message>
        <source>Enable hi&amp;gh DPI scaling:</source>
        <translation>Hohe &amp;Bildschirmauflösung:</translation>
    </message>
    <message>
        <source>Larger windows on fine screens; takes effect at the next start</source>
        <translation>Größere Fenster auf feinen Bildschirmen; wirkt beim nächsten Start</translation>
    </message>
    <message>
        <source>Enable hard&amp;ware rendering:</source>
        <translation>Mit der Grafikkarte &amp;zeichnen:</translation>
    </message>
    <message>
        <source>Draw with the graphics hardware; takes effect at the next start</source>
        <translation>Mit der Grafikhardware zeichnen; wirkt beim nächsten Start</translation>
    </message>
    <message>
        <source>&amp;Thread count for resource download in client</source>
        <translation>Zahl der &amp;Downloads im Client</translation>
    </message>
    <message>
        <source>How many files the client fetches at a time</source>
        <translation>Wie viele Dateien der Client gleichzeitig holt</translation>
    </message>
    <message>
        <source>Test &amp;Servers</source>
        <translation>T&amp;estserver</translation>
    </message>
    <message>
        <source>Servers beside the main one that are kept up to date</source>
        <translation>Server neben dem Hauptserver, die aktuell gehalten werden</translation>
    </message>
    <message>
        <source>Show the running l&amp;auncher at a second start:</source>
        <translation>Beim zweiten Start den l&amp;aufenden Launcher zeigen:</translation>
    </message>
    <message>
        <source>Instead of opening another launcher beside it; takes effect at the next start</source>
        <translation>Statt einen weiteren Launcher daneben zu öffnen; wirkt beim nächsten Start</translation>
    </message>
    <message>
        <source>Wine options</source>
        <translation>Wine-Optionen</translation>
    </message>
    <message>
        <source>Use &amp;custom Wine</source>
        <translation>Eigenes &amp;Wine benutzen</translation>
    </message>
    <message>
        <source>Run clients with a Wine of your own instead of the one that comes with the game</source>
        <translation>Clients mit einem eigenen Wine starten statt mit dem, das zum Spiel gehört</translation>
    </message>
    <message>
        <source>Custom Wine pat&amp;h</source>
        <translation>P&amp;fad des eigenen Wine</translation>
    </message>
    <message>
        <source>The program that starts your own Wine</source>
        <translation>Das Programm, das Ihr eigenes Wine startet</translation>
    </message>
    <message>
        <source>Use d&amp;ev versions</source>
        <translation>E&amp;ntwicklungsversionen</translation>
    </message>
    <message>
        <source>Choose from versions that are still being tested</source>
        <translation>Aus Versionen wählen, die noch getestet werden</translation>
    </message>
    <message>
        <source>Dev &amp;branch</source>
        <translation>Entwicklungszwei&amp;g</translation>
    </message>
    <message>
        <source>Only development versions of this branch</source>
        <translation>Nur Entwicklungsversionen dieses Zweigs</translation>
    </message>
    <message>
        <source>Wine versio&amp;n</source>
        <translation>Wine-Vers&amp;ion</translation>
    </message>
    <message>
        <source>&quot;Latest&quot; follows what the game&apos;s makers recommend</source>
        <translation>„Neueste“ folgt dem, was die Macher des Spiels empfehlen</translation>
    </message>
    <message>
        <source>WINEDEB&amp;UG</source>
        <translation>WINEDEB&amp;UG</translation>
    </message>
    <message>
        <source>What Wine writes to the log, such as &quot;+loaddll,-all&quot;</source>
        <translation>Was Wine ins Protokoll schreibt, zum Beispiel „+loaddll,-all“</translation>
    </message>
    <message>
        <source>Retina m&amp;ode</source>
        <translation>Retina-&amp;Modus</translation>
    </message>
    <message>
        <source>Let clients use every pixel of a fine screen</source>
        <translation>Clients dürfen jeden Punkt eines feinen Bildschirms nutzen</translation>
    </message>
    <message>
        <source>Auto detect</source>
        <translation>Automatisch</translation>
    </message>
    <message>
        <source>Video memor&amp;y</source>
        <translation>Videospeiche&amp;r</translation>
    </message>
    <message>
        <source>Megabytes; what Wine tells clients that there is</source>
        <translation>Megabyte; wie viel Wine den Clients nennt</translation>
    </message>
    <message>
        <source>Looking for versions...</source>
        <translation>Nach Versionen wird gesucht...</translation>
    </message>
    <message>
        <source>The versions could not be loaded: %1</source>
        <translation>Die Versionen konnten nicht geladen werden: %1</translation>
    </message>
    <message>
        <source>The server offers no versions</source>
        <translation>Der Server bietet keine Versionen an</translation>
    </message>
    <message>
        <source>Warning</source>
        <translation>Warnung</translation>
    </message>
    <message>
        <source>A Development version of the launcher may be unstable. It is not recommended for users unless explicitly asked for by the developers. Are you sure want to select the Development version?</source>
        <translation>Eine Entwicklungsversion des Launchers kann instabil sein. Sie wird nur empfohlen, wenn die Entwickler ausdrücklich darum gebeten haben. Möchten Sie wirklich die Entwicklungsversion wählen?</translation>
    </message>
    <message>
        <source>If you choose to ignore certificate errors you will not be warned about potential security incidents in the future. It is not recommended unless you are sure you are on a safe network.

Are you sure you want to continue?</source>
        <translation>Wenn Sie Zertifikatsfehler ignorieren, werden Sie künftig nicht mehr vor möglichen Sicherheitsvorfällen gewarnt. Das ist nur zu empfehlen, wenn Sie sicher sind, dass Ihr Netz sicher ist.

Möchten Sie wirklich fortfahren?</translation>
    </message>
    <message>
        <source> MB/s</source>
        <translation> MB/s</translation>
    </message>
    <message>
        <source>None</source>
        <translation>Keine</translation>
    </message>
    <message>
        <source>Limit o&amp;f all downloads together:</source>
        <translation>G&amp;renze für alle Downloads zusammen:</translation>
    </message>
    <message>
        <source>0 is no limit</source>
        <translation>0 ist keine Grenze</translation>
    </message>
    <message>
        <source>&amp;Keep downloads until no client runs:</source>
        <translation>Mit Downloads warten, bis &amp;kein Client läuft:</translation>
    </message>
    <message>
        <source>Nothing is downloaded while you play; it goes on afterwards</source>
        <translation>Während Sie spielen, wird nichts heruntergeladen; danach geht es weiter</translation>
    </message>
    <message>
        <source>Downloads are paused; the versions come when they go on.</source>
        <translation>Downloads sind angehalten; die Versionen kommen, wenn sie weitergehen.</translation>
    </message>
</context>
<context>
    <name>SimpleGui</name>
    <message>
        <source>Server list - Velkor Launcher</source>
        <translation>Serverliste - Velkor Launcher</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Datei</translation>
    </message>
</context>
<context>
    <name>TitleBar</name>
    <message>
        <source>Menu</source>
        <translation>Menü</translation>
    </message>
    <message>
        <source>Minimize</source>
        <translation>Minimieren</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
</context>
<context>
    <name>ToolsMenu</name>
    <message>
        <source>&amp;Tools</source>
        <translation>&amp;Werkzeuge</translation>
    </message>
    <message>
        <source>Download &amp;limit</source>
        <translation>Download&amp;grenze</translation>
    </message>
    <message>
        <source>Use existing &amp;game files...</source>
        <translation>&amp;Vorhandene Spieldateien verwenden...</translation>
    </message>
    <message>
        <source>Launch &amp;options...</source>
        <translation>Start&amp;optionen...</translation>
    </message>
    <message>
        <source>&amp;Report for the support...</source>
        <translation>&amp;Bericht für den Support...</translation>
    </message>
    <message>
        <source>Resume &amp;downloads</source>
        <translation>&amp;Downloads fortsetzen</translation>
    </message>
    <message>
        <source>Pause &amp;downloads</source>
        <translation>&amp;Downloads anhalten</translation>
    </message>
    <message>
        <source>%1 MB/s</source>
        <translation>%1 MB/s</translation>
    </message>
    <message>
        <source>None</source>
        <translation>Keine</translation>
    </message>
    <message>
        <source>Sho&amp;w the log...</source>
        <translation>P&amp;rotokoll zeigen...</translation>
    </message>
</context>
<context>
    <name>TransferMeter</name>
    <message>
        <source>%1/s on average</source>
        <translation>%1/s im Durchschnitt</translation>
    </message>
    <message>
        <source>%1, about %2 left</source>
        <translation>%1, noch etwa %2</translation>
    </message>
    <message>
        <source>%1 s</source>
        <translation>%1 s</translation>
    </message>
    <message>
        <source>%1 min</source>
        <translation>%1 min</translation>
    </message>
    <message>
        <source>%1 h %2 min</source>
        <translation>%1 h %2 min</translation>
    </message>
</context>
<context>
    <name>TrayStatus</name>
    <message>
        <source>%1: %2 % - %3</source>
        <translation>%1: %2 % - %3</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>Ready</source>
        <translation>Bereit</translation>
    </message>
    <message>
        <source>%1 is ready</source>
        <translation>%1 ist bereit</translation>
    </message>
    <message>
        <source>The update has ended.</source>
        <translation>Die Aktualisierung ist beendet.</translation>
    </message>
    <message>
        <source>%1 could not be updated</source>
        <translation>%1 konnte nicht aktualisiert werden</translation>
    </message>
</context>
<context>
    <name>UpdateDialog</name>
    <message>
        <source>Version %1 of the launcher is available. This launcher was installed by your system: please update it with the system&apos;s package manager.</source>
        <translation>Version %1 des Launchers ist verfügbar. Dieser Launcher wurde von Ihrem System installiert: bitte aktualisieren Sie ihn mit der Paketverwaltung des Systems.</translation>
    </message>
    <message>
        <source>Velkor Launcher Update</source>
        <translation>Aktualisierung des Velkor Launchers</translation>
    </message>
    <message>
        <source>Downloading new version %1</source>
        <translation>Die neue Version %1 wird heruntergeladen</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Fortschritt</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Retry</source>
        <translation>Noch einmal</translation>
    </message>
    <message>
        <source> Update will be applied automatically in %2 seconds.</source>
        <translation> Die Aktualisierung wird in %2 Sekunden von selbst angewendet.</translation>
    </message>
    <message>
        <source>The launcher goes on without it in %1 seconds.</source>
        <translation>Der Launcher macht in %1 Sekunden ohne sie weiter.</translation>
    </message>
    <message>
        <source>Downloading binary index for new version %1</source>
        <translation>Das Dateiverzeichnis der neuen Version %1 wird heruntergeladen</translation>
    </message>
    <message>
        <source>The list of the new version&apos;s files could not be downloaded.</source>
        <translation>Die Liste der Dateien der neuen Version konnte nicht heruntergeladen werden.</translation>
    </message>
    <message>
        <source>The list of the new version&apos;s files could not be saved.</source>
        <translation>Die Liste der Dateien der neuen Version konnte nicht gespeichert werden.</translation>
    </message>
    <message>
        <source>Downloading new launcher binaries</source>
        <translation>Die neuen Programme des Launchers werden heruntergeladen</translation>
    </message>
    <message>
        <source>Downloading new launcher binaries (%1%)</source>
        <translation>Die neuen Programme des Launchers werden heruntergeladen (%1 %)</translation>
    </message>
    <message>
        <source>The new version could not be downloaded.</source>
        <translation>Die neue Version konnte nicht heruntergeladen werden.</translation>
    </message>
    <message>
        <source>The new version could not be downloaded: %1</source>
        <translation>Die neue Version konnte nicht heruntergeladen werden: %1</translation>
    </message>
    <message>
        <source>New version available</source>
        <translation>Neue Version verfügbar</translation>
    </message>
    <message>
        <source>The Velkor launcher has downloaded an update (version %1). Press OK to apply the update or Cancel to stay on the current version.</source>
        <translation>Der Velkor Launcher hat eine Aktualisierung heruntergeladen (Version %1). Drücken Sie OK, um sie anzuwenden, oder Abbrechen, um bei der jetzigen Version zu bleiben.</translation>
    </message>
    <message>
        <source>The new version cannot be installed: %1</source>
        <translation>Die neue Version kann nicht installiert werden: %1</translation>
    </message>
</context>
<context>
    <name>UpdaterStarter</name>
    <message>
        <source>it has no updater.</source>
        <translation>sie hat keinen Updater.</translation>
    </message>
    <message>
        <source>the updater could not be copied.</source>
        <translation>der Updater konnte nicht kopiert werden.</translation>
    </message>
    <message>
        <source>the updater could not be started.</source>
        <translation>der Updater konnte nicht gestartet werden.</translation>
    </message>
</context>
<context>
    <name>Verifier</name>
    <message>
        <source>is a link</source>
        <translation>ist eine Verknüpfung</translation>
    </message>
    <message>
        <source>is a folder</source>
        <translation>ist ein Ordner</translation>
    </message>
    <message>
        <source>is no regular file</source>
        <translation>ist keine normale Datei</translation>
    </message>
    <message>
        <source>is empty</source>
        <translation>ist leer</translation>
    </message>
    <message>
        <source>is too short</source>
        <translation>ist zu kurz</translation>
    </message>
    <message>
        <source>is too long</source>
        <translation>ist zu lang</translation>
    </message>
    <message>
        <source>cannot be read</source>
        <translation>kann nicht gelesen werden</translation>
    </message>
    <message>
        <source>has the wrong content</source>
        <translation>hat den falschen Inhalt</translation>
    </message>
    <message>
        <source>Looking at the cache</source>
        <translation>Der Cache wird durchgesehen</translation>
    </message>
    <message>
        <source>%1 of %2 files (%3 of %4), %5</source>
        <translation>%1 von %2 Dateien (%3 von %4), %5</translation>
    </message>
</context>
<context>
    <name>VerifierGui</name>
    <message>
        <source>Shared Cache</source>
        <translation>Gemeinsamer Cache</translation>
    </message>
    <message>
        <source>&amp;Remove files that nothing needs</source>
        <translation>&amp;Dateien entfernen, die niemand braucht</translation>
    </message>
    <message>
        <source>Files of builds and servers that are not kept up to date any more</source>
        <translation>Dateien von Versionen und Servern, die nicht mehr aktuell gehalten werden</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Fortschritt</translation>
    </message>
    <message>
        <source>Verifying reads every file and compares it with what the game&apos;s makers have published.</source>
        <translation>Beim Prüfen wird jede Datei gelesen und mit dem verglichen, was die Macher des Spiels veröffentlicht haben.</translation>
    </message>
    <message>
        <source>Results</source>
        <translation>Ergebnisse</translation>
    </message>
    <message>
        <source>What is found is listed here.</source>
        <translation>Was gefunden wird, steht hier.</translation>
    </message>
    <message>
        <source>&amp;Verify</source>
        <translation>&amp;Prüfen</translation>
    </message>
    <message>
        <source>&amp;Move...</source>
        <translation>&amp;Verschieben...</translation>
    </message>
    <message>
        <source>Moves the cache to another folder, such as one on a larger disk</source>
        <translation>Verschiebt den Cache in einen anderen Ordner, etwa auf eine größere Festplatte</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>S&amp;chließen</translation>
    </message>
    <message>
        <source>The cache is in %1</source>
        <translation>Der Cache ist in %1</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>Abbre&amp;chen</translation>
    </message>
    <message>
        <source>Reading the indexes</source>
        <translation>Die Verzeichnisse werden gelesen</translation>
    </message>
    <message>
        <source>All files that were checked are as they should be.</source>
        <translation>Alle geprüften Dateien sind in Ordnung.</translation>
    </message>
    <message>
        <source>Damaged files were found. The next refresh fetches them again.</source>
        <translation>Beschädigte Dateien wurden gefunden. Die nächste Aktualisierung holt sie neu.</translation>
    </message>
    <message>
        <source>%1 is not needed</source>
        <translation>%1 wird nicht gebraucht</translation>
    </message>
    <message>
        <source>and %1 more</source>
        <translation>und %1 weitere</translation>
    </message>
    <message>
        <source>Where should the cache go?</source>
        <translation>Wohin soll der Cache?</translation>
    </message>
    <message>
        <source>The cache cannot be moved while clients are running</source>
        <translation>Der Cache kann nicht verschoben werden, solange Clients laufen</translation>
    </message>
    <message>
        <source>Moving the cache</source>
        <translation>Der Cache wird verschoben</translation>
    </message>
    <message>
        <source>The cache has been moved.</source>
        <translation>Der Cache wurde verschoben.</translation>
    </message>
    <message>
        <source>The cache is where it was.</source>
        <translation>Der Cache ist, wo er war.</translation>
    </message>
    <message>
        <source>The cache is where it was: %1</source>
        <translation>Der Cache ist, wo er war: %1</translation>
    </message>
    <message>
        <source>Cancelling...</source>
        <translation>Wird abgebrochen...</translation>
    </message>
</context>
<context>
    <name>WebGui</name>
    <message>
        <source>Couldn&apos;t get GUI version info</source>
        <translation>Die Version der Oberfläche konnte nicht geholt werden</translation>
    </message>
    <message>
        <source>See logs for details</source>
        <translation>Näheres steht im Protokoll</translation>
    </message>
    <message>
        <source>Can&apos;t get GUI version info when offline</source>
        <translation>Ohne Verbindung kann die Version der Oberfläche nicht geholt werden</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>Couldn&apos;t establish gui version</source>
        <translation>Die Version der Oberfläche konnte nicht bestimmt werden</translation>
    </message>
    <message>
        <source>Checking GUI version...</source>
        <translation>Version der Oberfläche wird geprüft...</translation>
    </message>
    <message>
        <source>Please wait</source>
        <translation>Bitte warten</translation>
    </message>
    <message>
        <source>Couldn&apos;t load the page</source>
        <translation>Die Seite konnte nicht geladen werden</translation>
    </message>
    <message>
        <source>The page has ended unexpectedly several times. It is loaded again soon.</source>
        <translation>Die Seite hat sich mehrmals unerwartet beendet. Sie wird bald neu geladen.</translation>
    </message>
</context>
<context>
    <name>WineManager</name>
    <message>
        <source>Removing the old version</source>
        <translation>Die alte Version wird entfernt</translation>
    </message>
    <message>
        <source>Wine: %1</source>
        <translation>Wine: %1</translation>
    </message>
    <message>
        <source>Preparing Wine...</source>
        <translation>Wine wird vorbereitet...</translation>
    </message>
</context>
</TS>
