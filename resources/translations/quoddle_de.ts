<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>Appcast</name>
    <message>
        <source>It is no list of versions.</source>
        <translation>Das ist keine Versionsliste.</translation>
    </message>
    <message>
        <source>The list of versions cannot be read: line %1: %2</source>
        <translation>Die Versionsliste kann nicht gelesen werden: Zeile %1: %2</translation>
    </message>
    <message>
        <source>The list of versions is too long.</source>
        <translation>Die Versionsliste ist zu lang.</translation>
    </message>
</context>
<context>
    <name>AppletPanels</name>
    <message>
        <source>Version %1</source>
        <translation>Version %1</translation>
    </message>
    <message>
        <source>Choose the Kestrel Applet to test</source>
        <translation>Zu testendes Kestrel-Applet auswählen</translation>
    </message>
</context>
<context>
    <name>BundleArchive</name>
    <message>
        <source>There is no applet in the archive.</source>
        <translation>Das Archiv enthält kein Applet.</translation>
    </message>
    <message>
        <source>The archive cannot be unpacked: %1</source>
        <translation>Das Archiv kann nicht entpackt werden: %1</translation>
    </message>
    <message>
        <source>it is damaged</source>
        <translation>es ist beschädigt</translation>
    </message>
    <message>
        <source>The archive is not to be trusted: %1</source>
        <translation>Dem Archiv ist nicht zu trauen: %1</translation>
    </message>
    <message>
        <source>There are too many files in the archive.</source>
        <translation>Das Archiv enthält zu viele Dateien.</translation>
    </message>
    <message>
        <source>There is more than one applet in the archive.</source>
        <translation>Das Archiv enthält mehr als ein Applet.</translation>
    </message>
    <message>
        <source>What is in the archive is too large.</source>
        <translation>Der Inhalt des Archivs ist zu groß.</translation>
    </message>
</context>
<context>
    <name>ChooseApplicationPanel</name>
    <message>
        <source>Choose Application</source>
        <translation>Anwendung auswählen</translation>
    </message>
    <message>
        <source>Select an application:</source>
        <translation>Wählen Sie eine Anwendung aus:</translation>
    </message>
    <message>
        <source>Applications</source>
        <translation>Anwendungen</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Choose</source>
        <translation>Auswählen</translation>
    </message>
</context>
<context>
    <name>ChooseColor</name>
    <message>
        <source>Choose a Color</source>
        <translation>Farbe auswählen</translation>
    </message>
</context>
<context>
    <name>ChooseFromListViewController</name>
    <message>
        <source>Please make a choice:</source>
        <translation>Bitte treffen Sie eine Auswahl:</translation>
    </message>
    <message>
        <source>Choices</source>
        <translation>Auswahlmöglichkeiten</translation>
    </message>
</context>
<context>
    <name>ChooseURLPanel</name>
    <message>
        <source>Choose a URL</source>
        <translation>URL auswählen</translation>
    </message>
    <message>
        <source>URL:</source>
        <translation>URL:</translation>
    </message>
    <message>
        <source>URL</source>
        <translation>URL</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
</context>
<context>
    <name>DisplayDialogPanel</name>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
</context>
<context>
    <name>DisplayDialogViewController</name>
    <message>
        <source>Answer</source>
        <translation>Antwort</translation>
    </message>
    <message>
        <source>Hidden answer</source>
        <translation>Verdeckte Antwort</translation>
    </message>
</context>
<context>
    <name>Download</name>
    <message>
        <source>The server did not answer in time.</source>
        <translation>Der Server hat nicht rechtzeitig geantwortet.</translation>
    </message>
    <message>
        <source>The download took too long.</source>
        <translation>Das Herunterladen hat zu lange gedauert.</translation>
    </message>
    <message>
        <source>Nothing is fetched from %1: it is no https address.</source>
        <translation>Von %1 wird nichts geladen: Das ist keine https-Adresse.</translation>
    </message>
    <message>
        <source>The server sends more than was announced.</source>
        <translation>Der Server sendet mehr als angekündigt.</translation>
    </message>
    <message>
        <source>The server answered with the status %1.</source>
        <translation>Der Server hat mit dem Status %1 geantwortet.</translation>
    </message>
</context>
<context>
    <name>FileBrowser</name>
    <message>
        <source>Back</source>
        <translation>Zurück</translation>
    </message>
    <message>
        <source>Forward</source>
        <translation>Vorwärts</translation>
    </message>
    <message>
        <source>Enclosing Folder</source>
        <translation>Übergeordneter Ordner</translation>
    </message>
    <message>
        <source>Location</source>
        <translation>Ort</translation>
    </message>
    <message>
        <source>New Folder</source>
        <translation>Neuer Ordner</translation>
    </message>
    <message>
        <source>Places</source>
        <translation>Orte</translation>
    </message>
    <message>
        <source>Files</source>
        <translation>Dateien</translation>
    </message>
</context>
<context>
    <name>FileFacts</name>
    <message>
        <source>Application</source>
        <translation>Anwendung</translation>
    </message>
    <message>
        <source>Rich text document with attachments</source>
        <translation>RTF-Dokument mit Anhängen</translation>
    </message>
    <message>
        <source>Package</source>
        <translation>Paket</translation>
    </message>
    <message>
        <source>Folder</source>
        <translation>Ordner</translation>
    </message>
    <message>
        <source>Special file</source>
        <translation>Spezialdatei</translation>
    </message>
    <message>
        <source>Document</source>
        <translation>Dokument</translation>
    </message>
    <message>
        <source>1 byte</source>
        <translation>1 Byte</translation>
    </message>
    <message>
        <source>More than %1 items</source>
        <translation>Mehr als %1 Objekte</translation>
    </message>
    <message>
        <source>1 item</source>
        <translation>1 Objekt</translation>
    </message>
    <message>
        <source>Created %1</source>
        <translation>Erstellt: %1</translation>
    </message>
    <message>
        <source>Modified %1</source>
        <translation>Geändert: %1</translation>
    </message>
    <message numerus="yes">
        <source>%Ln items</source>
        <translation>
            <numerusform>%Ln Objekt</numerusform>
            <numerusform>%Ln Objekte</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>FilePortal</name>
    <message>
        <source>Files that can be chosen</source>
        <translation>Wählbare Dateien</translation>
    </message>
</context>
<context>
    <name>NSOpenPanel</name>
    <message>
        <source>Open</source>
        <translation>Öffnen</translation>
    </message>
    <message>
        <source>Choose a Folder</source>
        <translation>Ordner auswählen</translation>
    </message>
    <message>
        <source>Choose</source>
        <translation>Auswählen</translation>
    </message>
    <message>
        <source>“%1” cannot be found.</source>
        <translation>„%1“ kann nicht gefunden werden.</translation>
    </message>
    <message>
        <source>“%1” is not of a kind that can be chosen here.</source>
        <translation>Dateien wie „%1“ können hier nicht ausgewählt werden.</translation>
    </message>
</context>
<context>
    <name>NSSavePanel</name>
    <message>
        <source>&amp;Name:</source>
        <translation>&amp;Name:</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>A file cannot be called “%1”.</source>
        <translation>Eine Datei kann nicht „%1“ heißen.</translation>
    </message>
    <message>
        <source>The name is too long.</source>
        <translation>Der Name ist zu lang.</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Untitled</source>
        <translation>Ohne Titel</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Speichern</translation>
    </message>
    <message>
        <source>The folder “%1” cannot be found.</source>
        <translation>Der Ordner „%1“ kann nicht gefunden werden.</translation>
    </message>
    <message>
        <source>You are not allowed to save in “%1”.</source>
        <translation>Sie dürfen in „%1“ nicht speichern.</translation>
    </message>
    <message>
        <source>“%1” already exists. Do you want to replace it?</source>
        <translation>„%1“ ist bereits vorhanden. Möchten Sie die Datei ersetzen?</translation>
    </message>
    <message>
        <source>Replacing it overwrites what it contains.</source>
        <translation>Beim Ersetzen wird der bisherige Inhalt überschrieben.</translation>
    </message>
    <message>
        <source>Replace</source>
        <translation>Ersetzen</translation>
    </message>
</context>
<context>
    <name>PackedApplets</name>
    <message>
        <source>“%1” cannot be read: %2</source>
        <translation>„%1“ kann nicht gelesen werden: %2</translation>
    </message>
    <message>
        <source>its name is not UTF-8; rename it</source>
        <translation>der Name ist nicht in UTF-8; benennen Sie die Datei um</translation>
    </message>
    <message>
        <source>it is too large</source>
        <translation>die Datei ist zu groß</translation>
    </message>
    <message>
        <source>there is no applet in it</source>
        <translation>darin ist kein Applet</translation>
    </message>
    <message>
        <source>The folder %1 cannot be made.</source>
        <translation>Der Ordner %1 kann nicht angelegt werden.</translation>
    </message>
</context>
<context>
    <name>Places</name>
    <message>
        <source>Home</source>
        <translation>Benutzerordner</translation>
    </message>
    <message>
        <source>Desktop</source>
        <translation>Schreibtisch</translation>
    </message>
    <message>
        <source>Documents</source>
        <translation>Dokumente</translation>
    </message>
    <message>
        <source>Downloads</source>
        <translation>Downloads</translation>
    </message>
    <message>
        <source>Music</source>
        <translation>Musik</translation>
    </message>
    <message>
        <source>Pictures</source>
        <translation>Bilder</translation>
    </message>
    <message>
        <source>Videos</source>
        <translation>Videos</translation>
    </message>
    <message>
        <source>Computer</source>
        <translation>Rechner</translation>
    </message>
</context>
<context>
    <name>PreviewContents</name>
    <message>
        <source>The file could not be read.</source>
        <translation>Die Datei konnte nicht gelesen werden.</translation>
    </message>
    <message>
        <source>The text has too many formats to be shown.</source>
        <translation>Der Text hat zu viele Formate, um angezeigt zu werden.</translation>
    </message>
    <message>
        <source>The file is not there any more.</source>
        <translation>Die Datei ist nicht mehr vorhanden.</translation>
    </message>
</context>
<context>
    <name>ProgressViewController</name>
    <message>
        <source>Progress</source>
        <translation>Fortschritt</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Stoppen</translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message>
        <source>Mode</source>
        <translation>Modus</translation>
    </message>
    <message>
        <source>Drop files</source>
        <translation>Dateien ablegen</translation>
    </message>
    <message>
        <source>Find files</source>
        <translation>Dateien suchen</translation>
    </message>
</context>
<context>
    <name>ScriptOpening</name>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Run</source>
        <translation>Ausführen</translation>
    </message>
    <message>
        <source>Do you want to run the script “%1”?

A script can do whatever you can do, with all of your files. Run it only if you know where it comes from.</source>
        <translation>Möchten Sie das Skript „%1“ ausführen?

Ein Skript kann alles tun, was Sie tun können, mit allen Ihren Dateien. Führen Sie es nur aus, wenn Sie wissen, woher es kommt.</translation>
    </message>
    <message>
        <source>Run Script</source>
        <translation>Skript ausführen</translation>
    </message>
    <message>
        <source>“%1” could not finish.</source>
        <translation>„%1“ konnte nicht zu Ende laufen.</translation>
    </message>
    <message>
        <source>“%1” could not be opened.</source>
        <translation>„%1“ konnte nicht geöffnet werden.</translation>
    </message>
    <message>
        <source>Do you want to run the applet “%1”?

You have not opened it before. An applet can do whatever you can do, with all of your files. Run it only if you know where it comes from.</source>
        <translation>Möchten Sie das Applet „%1“ ausführen?

Sie haben es noch nie geöffnet. Ein Applet kann alles tun, was Sie tun können, mit allen Ihren Dateien. Führen Sie es nur aus, wenn Sie wissen, woher es kommt.</translation>
    </message>
    <message>
        <source>Run Applet</source>
        <translation>Applet ausführen</translation>
    </message>
</context>
<context>
    <name>SpotlightResultsCell</name>
    <message>
        <source>Name: %@.
Path: %@</source>
        <translation>Name: %@.
Pfad: %@</translation>
    </message>
</context>
<context>
    <name>SpotlightViewController</name>
    <message>
        <source>Picture</source>
        <translation>Bild</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Suche</translation>
    </message>
    <message>
        <source>Name of a file</source>
        <translation>Name einer Datei</translation>
    </message>
    <message>
        <source>Results</source>
        <translation>Ergebnisse</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Beenden</translation>
    </message>
    <message>
        <source>Searching</source>
        <translation>Suche läuft</translation>
    </message>
    <message>
        <source>Quick Look</source>
        <translation>Vorschau</translation>
    </message>
    <message>
        <source>Look at the selected files (space in the list)</source>
        <translation>Ausgewählte Dateien ansehen (Leertaste in der Liste)</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Öffnen</translation>
    </message>
</context>
<context>
    <name>StartupViewController</name>
    <message>
        <source>Description</source>
        <translation>Beschreibung</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Beenden</translation>
    </message>
    <message>
        <source>Run</source>
        <translation>Ausführen</translation>
    </message>
</context>
<context>
    <name>UpdateFetcher</name>
    <message>
        <source>The program quoddle-fetch is missing.</source>
        <translation>Das Programm quoddle-fetch fehlt.</translation>
    </message>
    <message>
        <source>The download was broken off.</source>
        <translation>Das Herunterladen wurde abgebrochen.</translation>
    </message>
</context>
<context>
    <name>UpdateInstallation</name>
    <message>
        <source>There is nothing to download in the list of versions.</source>
        <translation>Die Versionsliste enthält nichts zum Herunterladen.</translation>
    </message>
    <message>
        <source>The applet has no key to tell by whether a download comes from its maker.</source>
        <translation>Das Applet hat keinen Schlüssel, an dem sich prüfen ließe, ob ein Download von seinem Hersteller stammt.</translation>
    </message>
    <message>
        <source>Its maker has not signed it.</source>
        <translation>Der Hersteller hat sie nicht signiert.</translation>
    </message>
    <message>
        <source>The list of versions does not say how large it is.</source>
        <translation>Die Versionsliste nennt ihre Größe nicht.</translation>
    </message>
    <message>
        <source>The applet belongs to a software package, which is updated with the system.</source>
        <translation>Das Applet gehört zu einem Softwarepaket, das mit dem System aktualisiert wird.</translation>
    </message>
    <message>
        <source>You may not change the folder that the applet is in.</source>
        <translation>Sie dürfen den Ordner, in dem das Applet liegt, nicht ändern.</translation>
    </message>
    <message>
        <source>What was downloaded is another applet.</source>
        <translation>Heruntergeladen wurde ein anderes Applet.</translation>
    </message>
    <message>
        <source>What was downloaded is another version.</source>
        <translation>Heruntergeladen wurde eine andere Version.</translation>
    </message>
    <message>
        <source>What was downloaded has no script.</source>
        <translation>Das heruntergeladene Applet hat kein Skript.</translation>
    </message>
</context>
<context>
    <name>UpdatePanel</name>
    <message>
        <source>Notes about this version</source>
        <translation>Hinweise zu dieser Version</translation>
    </message>
    <message>
        <source>Skip This Version</source>
        <translation>Version überspringen</translation>
    </message>
    <message>
        <source>Remind Me Later</source>
        <translation>Später erinnern</translation>
    </message>
    <message>
        <source>Open Page</source>
        <translation>Seite öffnen</translation>
    </message>
    <message>
        <source>Install Update</source>
        <translation>Update installieren</translation>
    </message>
</context>
<context>
    <name>quoddle-fetch</name>
    <message>
        <source>The applet&apos;s own key is damaged.</source>
        <translation>Der Schlüssel des Applets ist beschädigt.</translation>
    </message>
    <message>
        <source>What was downloaded cannot be read.</source>
        <translation>Die heruntergeladene Datei kann nicht gelesen werden.</translation>
    </message>
    <message>
        <source>The signature is wrong: what was downloaded does not come from the applet&apos;s maker.</source>
        <translation>Die Signatur ist falsch: Der Download stammt nicht vom Hersteller des Applets.</translation>
    </message>
    <message>
        <source>The download is shorter than was announced.</source>
        <translation>Der Download ist kürzer als angekündigt.</translation>
    </message>
    <message>
        <source>There is no folder to unpack the archive in.</source>
        <translation>Es gibt keinen Ordner, in dem das Archiv entpackt werden kann.</translation>
    </message>
    <message>
        <source>What was packed cannot be read.</source>
        <translation>Was gepackt wurde, kann nicht gelesen werden.</translation>
    </message>
    <message>
        <source>The file has changed meanwhile. Try again.</source>
        <translation>Die Datei hat sich inzwischen geändert. Versuchen Sie es noch einmal.</translation>
    </message>
</context>
<context>
    <name>quoddle::CardView</name>
    <message>
        <source>Information on %1</source>
        <translation>Informationen zu %1</translation>
    </message>
</context>
<context>
    <name>quoddle::ChooseFromListViewController</name>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
</context>
<context>
    <name>quoddle::ChooseURLPanel</name>
    <message>
        <source>No addresses are known</source>
        <translation>Keine Adressen bekannt</translation>
    </message>
</context>
<context>
    <name>quoddle::DescriptionView</name>
    <message>
        <source>The description is not shown: it is larger than %1.</source>
        <translation>Die Beschreibung wird nicht angezeigt: Sie ist größer als %1.</translation>
    </message>
    <message>
        <source>The description is not shown: it is too long or has too many formats.</source>
        <translation>Die Beschreibung wird nicht angezeigt: Sie ist zu lang oder hat zu viele Formate.</translation>
    </message>
</context>
<context>
    <name>quoddle::DirectoryModel</name>
    <message>
        <source>1 byte</source>
        <translation>1 Byte</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Größe</translation>
    </message>
    <message>
        <source>Modified</source>
        <translation>Geändert</translation>
    </message>
</context>
<context>
    <name>quoddle::DropFilesView</name>
    <message>
        <source>Drop zone</source>
        <translation>Ablagefläche</translation>
    </message>
    <message>
        <source>Picture</source>
        <translation>Bild</translation>
    </message>
    <message>
        <source>Drop files here</source>
        <translation>Dateien hier ablegen</translation>
    </message>
</context>
<context>
    <name>quoddle::FileBrowser</name>
    <message>
        <source>New Folder</source>
        <translation>Neuer Ordner</translation>
    </message>
    <message>
        <source>Name of the new folder:</source>
        <translation>Name des neuen Ordners:</translation>
    </message>
    <message>
        <source>Create</source>
        <translation>Erstellen</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>“%1” is there already.</source>
        <translation>„%1“ ist bereits vorhanden.</translation>
    </message>
    <message>
        <source>The folder “%1” could not be created.</source>
        <translation>Der Ordner „%1“ konnte nicht erstellt werden.</translation>
    </message>
    <message>
        <source>Reading…</source>
        <translation>Wird gelesen&#xa0;…</translation>
    </message>
    <message>
        <source>You are not allowed to see what is in this folder.</source>
        <translation>Sie dürfen den Inhalt dieses Ordners nicht sehen.</translation>
    </message>
    <message>
        <source>This folder cannot be found.</source>
        <translation>Dieser Ordner kann nicht gefunden werden.</translation>
    </message>
    <message>
        <source>Nothing here can be chosen.</source>
        <translation>Hier kann nichts ausgewählt werden.</translation>
    </message>
    <message>
        <source>This folder is empty.</source>
        <translation>Dieser Ordner ist leer.</translation>
    </message>
</context>
<context>
    <name>quoddle::HookStopPanel</name>
    <message>
        <source>“%1” is waiting for an answer from its script.</source>
        <translation>„%1“ wartet auf eine Antwort des eigenen Skripts.</translation>
    </message>
    <message>
        <source>Waiting for the script</source>
        <translation>Warten auf das Skript</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Stoppen</translation>
    </message>
</context>
<context>
    <name>quoddle::JudgingView</name>
    <message>
        <source>Checking the files</source>
        <translation>Dateien werden geprüft</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Stoppen</translation>
    </message>
</context>
<context>
    <name>quoddle::NSToolbar</name>
    <message>
        <source>Toolbar</source>
        <translation>Werkzeugleiste</translation>
    </message>
</context>
<context>
    <name>quoddle::PagesView</name>
    <message>
        <source>Pages</source>
        <translation>Seiten</translation>
    </message>
    <message>
        <source>Page %1</source>
        <translation>Seite %1</translation>
    </message>
</context>
<context>
    <name>quoddle::PictureView</name>
    <message>
        <source>Picture</source>
        <translation>Bild</translation>
    </message>
</context>
<context>
    <name>quoddle::PreviewView</name>
    <message>
        <source>Text</source>
        <translation>Text</translation>
    </message>
</context>
<context>
    <name>quoddle::ProgressViewController</name>
    <message>
        <source>%d%% completed</source>
        <translation>%d&#xa0;%% abgeschlossen</translation>
    </message>
    <message>
        <source>%@ of %@</source>
        <translation>%@ von %@</translation>
    </message>
</context>
<context>
    <name>quoddle::PromptView</name>
    <message>
        <source>Prompt</source>
        <translation>Aufforderung</translation>
    </message>
</context>
<context>
    <name>quoddle::QLPreviewPanel</name>
    <message>
        <source>Preview</source>
        <translation>Vorschau</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Previous</source>
        <translation>Vorheriges</translation>
    </message>
    <message>
        <source>Next</source>
        <translation>Nächstes</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Öffnen</translation>
    </message>
    <message>
        <source>%1 (%2 of %3)</source>
        <translation>%1 (%2 von %3)</translation>
    </message>
    <message>
        <source>Open with “%1”</source>
        <translation>Mit „%1“ öffnen</translation>
    </message>
    <message>
        <source>Nothing is selected.</source>
        <translation>Es ist nichts ausgewählt.</translation>
    </message>
    <message>
        <source>Only the beginning of the text is shown.</source>
        <translation>Nur der Anfang des Textes wird angezeigt.</translation>
    </message>
    <message>
        <source>It is too large to be shown here.</source>
        <translation>Die Datei ist zu groß, um hier angezeigt zu werden.</translation>
    </message>
    <message>
        <source>Its pages cannot be shown.</source>
        <translation>Die Seiten können nicht angezeigt werden.</translation>
    </message>
    <message>
        <source>The picture cannot be shown.</source>
        <translation>Das Bild kann nicht angezeigt werden.</translation>
    </message>
    <message>
        <source>Only the first pages are shown.</source>
        <translation>Nur die ersten Seiten werden angezeigt.</translation>
    </message>
</context>
<context>
    <name>quoddle::SUUpdater</name>
    <message>
        <source>Should %1 look for updates by itself?</source>
        <translation>Soll %1 selbst nach Updates suchen?</translation>
    </message>
    <message>
        <source>You can look for them at any time with “Check for Updates…” in the menu.</source>
        <translation>Mit „Nach Updates suchen&#xa0;…“ im Menü können Sie jederzeit selbst suchen.</translation>
    </message>
    <message>
        <source>Check Automatically</source>
        <translation>Automatisch suchen</translation>
    </message>
    <message>
        <source>Don’t Check</source>
        <translation>Nicht suchen</translation>
    </message>
    <message>
        <source>Looking for updates…</source>
        <translation>Es wird nach Updates gesucht&#xa0;…</translation>
    </message>
    <message>
        <source>Preparing version %1…</source>
        <translation>Version %1 wird vorbereitet&#xa0;…</translation>
    </message>
    <message>
        <source>%1 does not look for updates now.</source>
        <translation>%1 sucht jetzt nicht nach Updates.</translation>
    </message>
    <message>
        <source>Try again later.</source>
        <translation>Versuchen Sie es später noch einmal.</translation>
    </message>
    <message>
        <source>%1 cannot look for updates.</source>
        <translation>%1 kann nicht nach Updates suchen.</translation>
    </message>
    <message>
        <source>The address in its SUFeedURL is none.</source>
        <translation>In SUFeedURL steht keine gültige Adresse.</translation>
    </message>
    <message>
        <source>It does not say which version it is.</source>
        <translation>Das Applet gibt nicht an, welche Version es ist.</translation>
    </message>
    <message>
        <source>%1 could not look for updates.</source>
        <translation>%1 konnte nicht nach Updates suchen.</translation>
    </message>
    <message>
        <source>%1 is up to date.</source>
        <translation>%1 ist auf dem neuesten Stand.</translation>
    </message>
    <message>
        <source>Version %1 is the newest one.</source>
        <translation>Version %1 ist die neueste.</translation>
    </message>
    <message>
        <source>The notes about this version could not be fetched. %1</source>
        <translation>Die Hinweise zu dieser Version konnten nicht geladen werden. %1</translation>
    </message>
    <message>
        <source>The update of %1 could not be installed.</source>
        <translation>Das Update für %1 konnte nicht installiert werden.</translation>
    </message>
    <message>
        <source>Downloading version %1…</source>
        <translation>Version %1 wird heruntergeladen&#xa0;…</translation>
    </message>
    <message>
        <source>It is incomplete.</source>
        <translation>Es ist unvollständig.</translation>
    </message>
    <message>
        <source>The update of %1 is ready.</source>
        <translation>Das Update für %1 ist bereit.</translation>
    </message>
    <message>
        <source>It is installed as soon as the applet is quit.</source>
        <translation>Es wird installiert, sobald das Applet beendet wird.</translation>
    </message>
    <message>
        <source>The applet stays as it is (error %1).</source>
        <translation>Das Applet bleibt, wie es ist (Fehler %1).</translation>
    </message>
</context>
<context>
    <name>quoddle::SpotlightViewController</name>
    <message>
        <source>The system cannot watch so many folders: new files in some of them appear after half a minute.</source>
        <translation>Das System kann so viele Ordner nicht überwachen: Neue Dateien erscheinen in manchen erst nach einer halben Minute.</translation>
    </message>
    <message>
        <source>The search was stopped. Type to search again.</source>
        <translation>Die Suche wurde gestoppt. Tippen Sie, um erneut zu suchen.</translation>
    </message>
    <message>
        <source>%ld found</source>
        <translation>%ld gefunden</translation>
    </message>
</context>
<context>
    <name>quoddle::StartupViewController</name>
    <message>
        <source>Version %1</source>
        <translation>Version %1</translation>
    </message>
</context>
<context>
    <name>quoddle::UpdatePanel</name>
    <message>
        <source>A new version of %1 is available.</source>
        <translation>Eine neue Version von %1 ist verfügbar.</translation>
    </message>
    <message>
        <source>Version %1 has come out; you have version %2.</source>
        <translation>Version %1 ist erschienen; Sie haben Version %2.</translation>
    </message>
    <message>
        <source>Install it now?</source>
        <translation>Jetzt installieren?</translation>
    </message>
    <message>
        <source>It cannot be installed from here: %1</source>
        <translation>Sie kann von hier aus nicht installiert werden: %1</translation>
    </message>
    <message>
        <source>There are no notes about this version.</source>
        <translation>Zu dieser Version gibt es keine Hinweise.</translation>
    </message>
</context>
<context>
    <name>quoddle::UpdateProgressPanel</name>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1 von %2</translation>
    </message>
</context>
</TS>
