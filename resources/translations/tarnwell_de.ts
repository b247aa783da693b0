<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>AboutSheet</name>
    <message>
        <source>About Tarnwell</source>
        <translation>Über Tarnwell</translation>
    </message>
    <message>
        <source>Who made Tarnwell; scrolls by itself, backwards while Alt is held</source>
        <translation>Wer Tarnwell gemacht hat; läuft von selbst, mit gedrückter Alt-Taste rückwärts</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Fertig</translation>
    </message>
    <message>
        <source>Closes this sheet</source>
        <translation>Schließt dieses Fenster</translation>
    </message>
</context>
<context>
    <name>BringBackSheet</name>
    <message>
        <source>Bring Back Shortcuts</source>
        <translation>Tastenkürzel zurückholen</translation>
    </message>
    <message>
        <source>&amp;Shortcuts as they were before:</source>
        <translation>&amp;Tastenkürzel, wie sie vorher waren:</translation>
    </message>
    <message>
        <source>Kept shortcuts</source>
        <translation>Aufbewahrte Tastenkürzel</translation>
    </message>
    <message>
        <source>The newest first, each with what it holds</source>
        <translation>Die neuesten zuerst, jeweils mit dem, was sie enthalten</translation>
    </message>
    <message>
        <source>&amp;Bring Back…</source>
        <translation>&amp;Zurückholen …</translation>
    </message>
    <message>
        <source>Bring Back</source>
        <translation>Zurückholen</translation>
    </message>
    <message>
        <source>Replaces the present shortcuts by the chosen ones, after asking</source>
        <translation>Ersetzt nach einer Rückfrage die jetzigen Tastenkürzel durch die gewählten</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Closes this sheet and changes nothing</source>
        <translation>Schließt dieses Fenster und ändert nichts</translation>
    </message>
</context>
<context>
    <name>HotKeySheet</name>
    <message>
        <source>Set Hot Key</source>
        <translation>Kürzel festlegen</translation>
    </message>
    <message>
        <source>Press the key combination that shall open the menus. It must hold Control, Option (Alt) or Command (Super).</source>
        <translation>Drücken Sie die Tastenkombination, die die Menüs öffnen soll. Sie muss Control (Strg), Option (Alt) oder Command (Super) enthalten.</translation>
    </message>
    <message>
        <source>Hot key:</source>
        <translation>Tastenkürzel:</translation>
    </message>
    <message>
        <source>Hot key</source>
        <translation>Tastenkürzel</translation>
    </message>
    <message>
        <source>Shows the key combination that was pressed last</source>
        <translation>Zeigt die zuletzt gedrückte Tastenkombination</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Keeps the key combination</source>
        <translation>Übernimmt die Tastenkombination</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Keeps the old key combination</source>
        <translation>Behält die alte Tastenkombination</translation>
    </message>
</context>
<context>
    <name>Main</name>
    <message>
        <source>Tarnwell</source>
        <translation>Tarnwell</translation>
    </message>
    <message>
        <source>&lt;span style=&quot;font-size:x-large; font-weight:600;&quot;&gt;Tarnwell&lt;/span&gt;</source>
        <translation>&lt;span style=&quot;font-size:x-large; font-weight:600;&quot;&gt;Tarnwell&lt;/span&gt;</translation>
    </message>
    <message>
        <source>Version of Tarnwell</source>
        <translation>Version von Tarnwell</translation>
    </message>
    <message>
        <source>E&amp;nable Tarnwell</source>
        <translation>Tarnwell ei&amp;nschalten</translation>
    </message>
    <message>
        <source>Enable Tarnwell</source>
        <translation>Tarnwell einschalten</translation>
    </message>
    <message>
        <source>Turns Tarnwell on or off in all applications</source>
        <translation>Schaltet Tarnwell in allen Programmen ein oder aus</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>The pages of the Tarnwell settings</source>
        <translation>Die Seiten der Tarnwell-Einstellungen</translation>
    </message>
    <message>
        <source>&amp;Shortcuts</source>
        <translation>&amp;Tastenkürzel</translation>
    </message>
    <message>
        <source>&amp;Application:</source>
        <translation>&amp;Programm:</translation>
    </message>
    <message>
        <source>Application</source>
        <translation>Programm</translation>
    </message>
    <message>
        <source>The application whose changed shortcuts are shown</source>
        <translation>Das Programm, dessen geänderte Tastenkürzel gezeigt werden</translation>
    </message>
    <message>
        <source>Changed shortcuts of %@:</source>
        <translation>Geänderte Tastenkürzel von %@:</translation>
    </message>
    <message>
        <source>Says whose shortcuts the table shows</source>
        <translation>Sagt, wessen Tastenkürzel die Tabelle zeigt</translation>
    </message>
    <message>
        <source>Filter by item, menu or shortcut</source>
        <translation>Nach Menüpunkt, Menü oder Kürzel filtern</translation>
    </message>
    <message>
        <source>Filter the shortcuts</source>
        <translation>Tastenkürzel filtern</translation>
    </message>
    <message>
        <source>Only rows that hold these words are shown</source>
        <translation>Nur Zeilen mit diesen Wörtern werden gezeigt</translation>
    </message>
    <message>
        <source>Press &amp;Keys</source>
        <translation>Tasten d&amp;rücken</translation>
    </message>
    <message>
        <source>Find by pressing keys</source>
        <translation>Durch Drücken der Tasten finden</translation>
    </message>
    <message>
        <source>Shows the rows with the shortcut that is pressed in the filter field</source>
        <translation>Zeigt die Zeilen mit dem Tastenkürzel, das im Filterfeld gedrückt wird</translation>
    </message>
    <message>
        <source>Changed shortcuts</source>
        <translation>Geänderte Tastenkürzel</translation>
    </message>
    <message>
        <source>One row for each menu item whose shortcut was changed</source>
        <translation>Eine Zeile für jeden Menüpunkt mit geändertem Tastenkürzel</translation>
    </message>
    <message>
        <source>Menu Item</source>
        <translation>Menüpunkt</translation>
    </message>
    <message>
        <source>New Shortcut</source>
        <translation>Neues Kürzel</translation>
    </message>
    <message>
        <source>Original Shortcut</source>
        <translation>Ursprüngliches Kürzel</translation>
    </message>
    <message>
        <source>Menu</source>
        <translation>Menü</translation>
    </message>
    <message>
        <source>&amp;Restore Original…</source>
        <translation>&amp;Wiederherstellen …</translation>
    </message>
    <message>
        <source>Restore Original</source>
        <translation>Original wiederherstellen</translation>
    </message>
    <message>
        <source>Gives the selected menu item its original shortcut back</source>
        <translation>Gibt dem ausgewählten Menüpunkt sein ursprüngliches Tastenkürzel zurück</translation>
    </message>
    <message>
        <source>&amp;Bring Back…</source>
        <translation>&amp;Zurückholen …</translation>
    </message>
    <message>
        <source>Bring Back</source>
        <translation>Zurückholen</translation>
    </message>
    <message>
        <source>Lists the shortcuts that were replaced, to bring them back</source>
        <translation>Listet ersetzte Tastenkürzel auf, um sie zurückzuholen</translation>
    </message>
    <message>
        <source>Ex&amp;port…</source>
        <translation>E&amp;xportieren …</translation>
    </message>
    <message>
        <source>Export</source>
        <translation>Exportieren</translation>
    </message>
    <message>
        <source>Writes every changed shortcut to a file</source>
        <translation>Schreibt alle geänderten Tastenkürzel in eine Datei</translation>
    </message>
    <message>
        <source>&amp;Import…</source>
        <translation>&amp;Importieren …</translation>
    </message>
    <message>
        <source>Import</source>
        <translation>Importieren</translation>
    </message>
    <message>
        <source>Takes changed shortcuts from a file</source>
        <translation>Übernimmt geänderte Tastenkürzel aus einer Datei</translation>
    </message>
    <message>
        <source>Remove A&amp;ll…</source>
        <translation>&amp;Alle entfernen …</translation>
    </message>
    <message>
        <source>Remove All</source>
        <translation>Alle entfernen</translation>
    </message>
    <message>
        <source>Removes every changed shortcut of the chosen application</source>
        <translation>Entfernt alle geänderten Tastenkürzel des gewählten Programms</translation>
    </message>
    <message>
        <source>Try A&amp;gain</source>
        <translation>Erneut versu&amp;chen</translation>
    </message>
    <message>
        <source>Try Again</source>
        <translation>Erneut versuchen</translation>
    </message>
    <message>
        <source>Tries once more to store your changes</source>
        <translation>Versucht noch einmal, Ihre Änderungen zu speichern</translation>
    </message>
    <message>
        <source>E&amp;xclude List</source>
        <translation>Ausnahme&amp;liste</translation>
    </message>
    <message>
        <source>Applications that Tarnwell l&amp;eaves alone:</source>
        <translation>P&amp;rogramme, die Tarnwell in Ruhe lässt:</translation>
    </message>
    <message>
        <source>Excluded applications</source>
        <translation>Ausgenommene Programme</translation>
    </message>
    <message>
        <source>Applications that Tarnwell leaves alone</source>
        <translation>Programme, die Tarnwell in Ruhe lässt</translation>
    </message>
    <message>
        <source>A&amp;dd…</source>
        <translation>&amp;Hinzufügen …</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>Hinzufügen</translation>
    </message>
    <message>
        <source>Chooses applications to leave alone</source>
        <translation>Wählt Programme aus, die in Ruhe gelassen werden sollen</translation>
    </message>
    <message>
        <source>&amp;Remove</source>
        <translation>&amp;Entfernen</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Entfernen</translation>
    </message>
    <message>
        <source>Takes the selected application off the list</source>
        <translation>Nimmt das ausgewählte Programm aus der Liste</translation>
    </message>
    <message>
        <source>Export the exclude list</source>
        <translation>Ausnahmeliste exportieren</translation>
    </message>
    <message>
        <source>Writes the applications that you added to a file</source>
        <translation>Schreibt die von Ihnen hinzugefügten Programme in eine Datei</translation>
    </message>
    <message>
        <source>Import an exclude list</source>
        <translation>Ausnahmeliste importieren</translation>
    </message>
    <message>
        <source>Adds applications from a file</source>
        <translation>Fügt Programme aus einer Datei hinzu</translation>
    </message>
    <message>
        <source>&amp;Hide predefined applications</source>
        <translation>&amp;Vordefinierte Programme ausblenden</translation>
    </message>
    <message>
        <source>Hide predefined applications</source>
        <translation>Vordefinierte Programme ausblenden</translation>
    </message>
    <message>
        <source>Leaves the predefined applications out of the list</source>
        <translation>Lässt die vordefinierten Programme in der Liste weg</translation>
    </message>
    <message>
        <source>&amp;Keep the predefined list up to date over the internet</source>
        <translation>Vor&amp;definierte Liste über das Internet aktuell halten</translation>
    </message>
    <message>
        <source>Keep the predefined list up to date over the internet</source>
        <translation>Vordefinierte Liste über das Internet aktuell halten</translation>
    </message>
    <message>
        <source>Looks for a newer list once a year</source>
        <translation>Sucht einmal im Jahr nach einer neueren Liste</translation>
    </message>
    <message>
        <source>E&amp;ffects</source>
        <translation>E&amp;ffekte</translation>
    </message>
    <message>
        <source>&amp;Play an effect when a menu item is used through its shortcut</source>
        <translation>Effekt &amp;abspielen, wenn ein Menüpunkt über sein Kürzel benutzt wird</translation>
    </message>
    <message>
        <source>Play an effect when a menu item is used through its shortcut</source>
        <translation>Effekt abspielen, wenn ein Menüpunkt über sein Kürzel benutzt wird</translation>
    </message>
    <message>
        <source>Turns all effects on or off</source>
        <translation>Schaltet alle Effekte ein oder aus</translation>
    </message>
    <message>
        <source>Include the &amp;bundled effects</source>
        <translation>Mit&amp;gelieferte Effekte einbeziehen</translation>
    </message>
    <message>
        <source>Include the bundled effects</source>
        <translation>Mitgelieferte Effekte einbeziehen</translation>
    </message>
    <message>
        <source>Plays the effects that come with Tarnwell too</source>
        <translation>Spielt auch die Effekte, die mit Tarnwell kommen</translation>
    </message>
    <message>
        <source>Effec&amp;ts to choose from:</source>
        <translation>&amp;Wählbare Effekte:</translation>
    </message>
    <message>
        <source>Effects</source>
        <translation>Effekte</translation>
    </message>
    <message>
        <source>Groups of effects, each with a check box that turns it on</source>
        <translation>Gruppen von Effekten, jeder mit einem Kästchen, das ihn einschaltet</translation>
    </message>
    <message>
        <source>Effect</source>
        <translation>Effekt</translation>
    </message>
    <message>
        <source>On</source>
        <translation>Ein</translation>
    </message>
    <message>
        <source>Select an effect to see it here.</source>
        <translation>Wählen Sie einen Effekt aus, um ihn hier zu sehen.</translation>
    </message>
    <message>
        <source>This display cannot play effects: they need OpenGL 3.3.</source>
        <translation>Dieser Bildschirm kann keine Effekte abspielen: Sie brauchen OpenGL 3.3.</translation>
    </message>
    <message>
        <source>Preview</source>
        <translation>Vorschau</translation>
    </message>
    <message>
        <source>Plays the selected effect</source>
        <translation>Spielt den ausgewählten Effekt</translation>
    </message>
    <message>
        <source>Name of the effect</source>
        <translation>Name des Effekts</translation>
    </message>
    <message>
        <source>Author of the effect</source>
        <translation>Urheber des Effekts</translation>
    </message>
    <message>
        <source>Web address of the effect</source>
        <translation>Internetadresse des Effekts</translation>
    </message>
    <message>
        <source>&amp;Menu Accelerator</source>
        <translation>&amp;Menübeschleuniger</translation>
    </message>
    <message>
        <source>&amp;Open the menus from the keyboard</source>
        <translation>Menüs über die Ta&amp;statur öffnen</translation>
    </message>
    <message>
        <source>Open the menus from the keyboard</source>
        <translation>Menüs über die Tastatur öffnen</translation>
    </message>
    <message>
        <source>Turns the Menu Accelerator on or off</source>
        <translation>Schaltet den Menübeschleuniger ein oder aus</translation>
    </message>
    <message>
        <source>In every application, the hot key opens the menu bar. Type a few letters of a menu item to find it, and Return to choose it.</source>
        <translation>In jedem Programm öffnet das Tastenkürzel die Menüleiste. Ein paar Buchstaben finden einen Menüpunkt, die Eingabetaste wählt ihn.</translation>
    </message>
    <message>
        <source>Hot key:</source>
        <translation>Tastenkürzel:</translation>
    </message>
    <message>
        <source>The key combination that opens the menus</source>
        <translation>Die Tastenkombination, die die Menüs öffnet</translation>
    </message>
    <message>
        <source>Set &amp;Hot Key…</source>
        <translation>&amp;Kürzel festlegen …</translation>
    </message>
    <message>
        <source>Set Hot Key</source>
        <translation>Kürzel festlegen</translation>
    </message>
    <message>
        <source>Opens a sheet that takes a new key combination</source>
        <translation>Öffnet ein Fenster, das eine neue Tastenkombination aufnimmt</translation>
    </message>
    <message>
        <source>&amp;Updates &amp;&amp; About</source>
        <translation>&amp;Updates und Info</translation>
    </message>
    <message>
        <source>Learning</source>
        <translation>Kennenlernen</translation>
    </message>
    <message>
        <source>The tutorial shows in a few minutes how to change a shortcut.</source>
        <translation>Das Tutorial zeigt in ein paar Minuten, wie man ein Tastenkürzel ändert.</translation>
    </message>
    <message>
        <source>Open &amp;Tutorial</source>
        <translation>Tut&amp;orial öffnen</translation>
    </message>
    <message>
        <source>Open Tutorial</source>
        <translation>Tutorial öffnen</translation>
    </message>
    <message>
        <source>Starts the tutorial application</source>
        <translation>Startet das Tutorial-Programm</translation>
    </message>
    <message>
        <source>Mailing list</source>
        <translation>Mailingliste</translation>
    </message>
    <message>
        <source>&amp;E-mail address:</source>
        <translation>&amp;E-Mail-Adresse:</translation>
    </message>
    <message>
        <source>E-mail address</source>
        <translation>E-Mail-Adresse</translation>
    </message>
    <message>
        <source>The address that news about Tarnwell is sent to</source>
        <translation>Die Adresse, an die Neuigkeiten über Tarnwell gehen</translation>
    </message>
    <message>
        <source>Su&amp;bscribe</source>
        <translation>&amp;Abonnieren</translation>
    </message>
    <message>
        <source>Subscribe</source>
        <translation>Abonnieren</translation>
    </message>
    <message>
        <source>Opens the subscription page in the browser</source>
        <translation>Öffnet die Anmeldeseite im Browser</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Hilfe</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Hilfe</translation>
    </message>
    <message>
        <source>Opens the read-me document</source>
        <translation>Öffnet das Lies-mich-Dokument</translation>
    </message>
    <message>
        <source>&amp;About Tarnwell…</source>
        <translation>Ü&amp;ber Tarnwell …</translation>
    </message>
    <message>
        <source>About Tarnwell</source>
        <translation>Über Tarnwell</translation>
    </message>
    <message>
        <source>Shows who made Tarnwell</source>
        <translation>Zeigt, wer Tarnwell gemacht hat</translation>
    </message>
</context>
<context>
    <name>TutorialSheet</name>
    <message>
        <source>Tutorial</source>
        <translation>Tutorial</translation>
    </message>
    <message>
        <source>No application has changed shortcuts yet. The tutorial shows how to give a menu item a shortcut of your own.</source>
        <translation>Noch hat kein Programm geänderte Tastenkürzel. Das Tutorial zeigt, wie Sie einem Menüpunkt ein eigenes Kürzel geben.</translation>
    </message>
    <message>
        <source>Do not &amp;show this again</source>
        <translation>&amp;Nicht mehr anzeigen</translation>
    </message>
    <message>
        <source>Do not show this again</source>
        <translation>Nicht mehr anzeigen</translation>
    </message>
    <message>
        <source>Stops offering the tutorial</source>
        <translation>Bietet das Tutorial nicht mehr an</translation>
    </message>
    <message>
        <source>Open &amp;Tutorial</source>
        <translation>&amp;Tutorial öffnen</translation>
    </message>
    <message>
        <source>Open Tutorial</source>
        <translation>Tutorial öffnen</translation>
    </message>
    <message>
        <source>Starts the tutorial application</source>
        <translation>Startet das Tutorial-Programm</translation>
    </message>
    <message>
        <source>Not Now</source>
        <translation>Nicht jetzt</translation>
    </message>
    <message>
        <source>Closes this sheet</source>
        <translation>Schließt dieses Fenster</translation>
    </message>
</context>
<context>
    <name>UpdaterPrivacy</name>
    <message>
        <source>Privacy</source>
        <translation>Datenschutz</translation>
    </message>
    <message>
        <source>Privacy statement</source>
        <translation>Datenschutzerklärung</translation>
    </message>
    <message>
        <source>What a check for updates sends, and to whom</source>
        <translation>Was die Suche nach Updates sendet, und an wen</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Fertig</translation>
    </message>
    <message>
        <source>Closes this sheet</source>
        <translation>Schließt dieses Fenster</translation>
    </message>
</context>
<context>
    <name>UpdaterView</name>
    <message>
        <source>Software Updates</source>
        <translation>Softwareupdates</translation>
    </message>
    <message>
        <source>Software updates</source>
        <translation>Softwareupdates</translation>
    </message>
    <message>
        <source>&amp;Check for updates automatically:</source>
        <translation>Automatisch nach Updates &amp;suchen:</translation>
    </message>
    <message>
        <source>Check for updates automatically</source>
        <translation>Automatisch nach Updates suchen</translation>
    </message>
    <message>
        <source>Looks for a newer version by itself, as often as is chosen beside</source>
        <translation>Sucht von selbst nach einer neueren Version, so oft wie daneben gewählt</translation>
    </message>
    <message>
        <source>How often</source>
        <translation>Wie oft</translation>
    </message>
    <message>
        <source>How much time passes between two automatic checks</source>
        <translation>Wie viel Zeit zwischen zwei automatischen Suchen vergeht</translation>
    </message>
    <message>
        <source>Daily</source>
        <translation>Täglich</translation>
    </message>
    <message>
        <source>Weekly</source>
        <translation>Wöchentlich</translation>
    </message>
    <message>
        <source>Monthly</source>
        <translation>Monatlich</translation>
    </message>
    <message>
        <source>&amp;Privacy…</source>
        <translation>&amp;Datenschutz …</translation>
    </message>
    <message>
        <source>Privacy</source>
        <translation>Datenschutz</translation>
    </message>
    <message>
        <source>Tells what a check for updates sends, and to whom</source>
        <translation>Sagt, was die Suche nach Updates sendet, und an wen</translation>
    </message>
    <message>
        <source>As of %@: %@</source>
        <translation>Stand %@: %@</translation>
    </message>
    <message>
        <source>A check is running</source>
        <translation>Eine Suche läuft</translation>
    </message>
    <message>
        <source>&amp;Remove Lock</source>
        <translation>S&amp;perre entfernen</translation>
    </message>
    <message>
        <source>Remove Lock</source>
        <translation>Sperre entfernen</translation>
    </message>
    <message>
        <source>Removes the lock that an earlier check left behind, and checks for updates</source>
        <translation>Entfernt die Sperre, die eine frühere Suche hinterlassen hat, und sucht nach Updates</translation>
    </message>
    <message>
        <source>Check No&amp;w</source>
        <translation>&amp;Jetzt suchen</translation>
    </message>
    <message>
        <source>Check Now</source>
        <translation>Jetzt suchen</translation>
    </message>
    <message>
        <source>Looks for a newer version, or stops looking for one</source>
        <translation>Sucht nach einer neueren Version oder bricht die Suche ab</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Fertig</translation>
    </message>
    <message>
        <source>Closes this sheet</source>
        <translation>Schließt dieses Fenster</translation>
    </message>
</context>
<context>
    <name>ExcludeListExchange</name>
    <message>
        <source>it is not a record</source>
        <translation>er ist kein Datensatz</translation>
    </message>
    <message>
        <source>the value of &quot;%1&quot; is of the wrong kind</source>
        <translation>der Wert von „%1“ ist von falscher Art</translation>
    </message>
    <message>
        <source>it has no &quot;%1&quot;</source>
        <translation>ihm fehlt „%1“</translation>
    </message>
    <message>
        <source>it is marked as predefined</source>
        <translation>er ist als vordefiniert gekennzeichnet</translation>
    </message>
    <message>
        <source>%1 and %2 more</source>
        <translation>%1 und %2 weitere</translation>
    </message>
    <message>
        <source>The file is damaged: %1</source>
        <translation>Die Datei ist beschädigt: %1</translation>
    </message>
    <message>
        <source>The file holds no exclude list that was exported from here.</source>
        <translation>Die Datei enthält keine von hier exportierte Ausnahmeliste.</translation>
    </message>
    <message>
        <source>The file was written by a version that is not known here.</source>
        <translation>Die Datei stammt von einer Version, die hier nicht bekannt ist.</translation>
    </message>
    <message>
        <source>The file is damaged: it has no list of applications.</source>
        <translation>Die Datei ist beschädigt: Ihr fehlt die Liste der Programme.</translation>
    </message>
    <message>
        <source>The file is damaged: entry %1 cannot be used, because %2.</source>
        <translation>Die Datei ist beschädigt: Eintrag %1 ist nicht zu gebrauchen, denn %2.</translation>
    </message>
    <message>
        <source>Nothing would be added.</source>
        <translation>Nichts käme hinzu.</translation>
    </message>
    <message>
        <source>These applications will be added: %1.</source>
        <translation>Diese Programme kommen hinzu: %1.</translation>
    </message>
    <message>
        <source>These are on the list already and stay as they are: %1.</source>
        <translation>Diese stehen schon auf der Liste und bleiben, wie sie sind: %1.</translation>
    </message>
</context>
<context>
    <name>tarnwell::effects::OutlineModel</name>
    <message>
        <source>On</source>
        <translation>Ein</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>Aus</translation>
    </message>
    <message>
        <source>Some are on</source>
        <translation>Einige ein</translation>
    </message>
    <message>
        <source>%1, on</source>
        <translation>%1, ein</translation>
    </message>
    <message>
        <source>%1, off</source>
        <translation>%1, aus</translation>
    </message>
    <message>
        <source>%1, some are on</source>
        <translation>%1, einige ein</translation>
    </message>
</context>
<context>
    <name>tarnwell::effects::PreviewProcess</name>
    <message>
        <source>The program that plays effects is missing.</source>
        <translation>Das Programm, das Effekte abspielt, fehlt.</translation>
    </message>
    <message>
        <source>The program that plays effects cannot be started.</source>
        <translation>Das Programm, das Effekte abspielt, kann nicht gestartet werden.</translation>
    </message>
    <message>
        <source>Effects cannot be previewed on this computer: they need OpenGL 3.3.</source>
        <translation>Auf diesem Computer gibt es keine Vorschau: Effekte brauchen OpenGL 3.3.</translation>
    </message>
    <message>
        <source>This effect takes too much memory to be previewed.</source>
        <translation>Dieser Effekt braucht zu viel Speicher für eine Vorschau.</translation>
    </message>
    <message>
        <source>This effect takes too long to be previewed.</source>
        <translation>Dieser Effekt braucht zu lange für eine Vorschau.</translation>
    </message>
    <message>
        <source>This effect stopped the program that plays it.</source>
        <translation>Dieser Effekt hat das Programm beendet, das ihn abspielt.</translation>
    </message>
    <message>
        <source>This effect cannot be read by the program that plays it.</source>
        <translation>Dieser Effekt lässt sich vom Programm, das ihn abspielt, nicht lesen.</translation>
    </message>
</context>
<context>
    <name>FileReadError</name>
    <message>
        <source>It is a folder.</source>
        <translation>Es ist ein Ordner.</translation>
    </message>
    <message>
        <source>It is a pipe, a socket or a device, and not a file.</source>
        <translation>Es ist eine Pipe, ein Socket oder ein Gerät und keine Datei.</translation>
    </message>
    <message>
        <source>It is larger than %1 MB.</source>
        <translation>Die Datei ist größer als %1 MB.</translation>
    </message>
    <message>
        <source>It does not exist.</source>
        <translation>Die Datei gibt es nicht.</translation>
    </message>
    <message>
        <source>You may not read it.</source>
        <translation>Sie dürfen die Datei nicht lesen.</translation>
    </message>
    <message>
        <source>It cannot be read: %1.</source>
        <translation>Die Datei lässt sich nicht lesen: %1.</translation>
    </message>
</context>
<context>
    <name>LocalFileStore</name>
    <message>
        <source>It did not reach the disk: %1.</source>
        <translation>Die Datei ist nicht auf dem Datenträger angekommen: %1.</translation>
    </message>
    <message>
        <source>The folder &quot;%1&quot; cannot be made.</source>
        <translation>Der Ordner „%1“ lässt sich nicht anlegen.</translation>
    </message>
</context>
<context>
    <name>ShortcutArchive</name>
    <message>
        <source>Application &quot;%1&quot;</source>
        <translation>Programm „%1“</translation>
    </message>
    <message>
        <source>, group %1</source>
        <translation>, Gruppe %1</translation>
    </message>
    <message>
        <source>, item %1</source>
        <translation>, Eintrag %1</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is missing.</source>
        <translation>„%1“ fehlt.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is not a dictionary.</source>
        <translation>„%1“ ist kein Verzeichnis.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; in &quot;%2&quot; is not a number.</source>
        <translation>„%1“ in „%2“ ist keine Zahl.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; in &quot;%2&quot; is not text.</source>
        <translation>„%1“ in „%2“ ist kein Text.</translation>
    </message>
    <message>
        <source>It is not a dictionary.</source>
        <translation>Es ist kein Verzeichnis.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is not text.</source>
        <translation>„%1“ ist kein Text.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is not an array.</source>
        <translation>„%1“ ist keine Liste.</translation>
    </message>
    <message>
        <source>It holds %1 shortcuts, and at most %2 can be imported.</source>
        <translation>Die Datei enthält %1 Tastenkürzel; höchstens %2 lassen sich importieren.</translation>
    </message>
    <message>
        <source>Its groups are not an array.</source>
        <translation>Seine Gruppen sind keine Liste.</translation>
    </message>
    <message>
        <source>It is not a property list. %1</source>
        <translation>Die Datei ist keine Property-Liste. %1</translation>
    </message>
    <message>
        <source>It does not hold exported shortcuts.</source>
        <translation>Die Datei enthält keine exportierten Tastenkürzel.</translation>
    </message>
    <message>
        <source>It was written by a newer version of Tarnwell.</source>
        <translation>Die Datei stammt von einer neueren Version von Tarnwell.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is missing or of the wrong type.</source>
        <translation>„%1“ fehlt oder ist von falscher Art.</translation>
    </message>
</context>
<context>
    <name>SpokenKeys</name>
    <message>
        <source>Shift</source>
        <translation>Umschalt</translation>
    </message>
    <message>
        <source>Control</source>
        <translation>Steuerung</translation>
    </message>
    <message>
        <source>Option</source>
        <translation>Alt</translation>
    </message>
    <message>
        <source>Command</source>
        <translation>Super</translation>
    </message>
    <message>
        <source>Tab</source>
        <translation>Tabulator</translation>
    </message>
    <message>
        <source>Back Tab</source>
        <translation>Tabulator rückwärts</translation>
    </message>
    <message>
        <source>Enter</source>
        <translation>Enter</translation>
    </message>
    <message>
        <source>Space</source>
        <translation>Leertaste</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>Eingabe</translation>
    </message>
    <message>
        <source>Escape</source>
        <translation>Escape</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>Page Up</source>
        <translation>Bild auf</translation>
    </message>
    <message>
        <source>Page Down</source>
        <translation>Bild ab</translation>
    </message>
    <message>
        <source>Left Arrow</source>
        <translation>Pfeil links</translation>
    </message>
    <message>
        <source>Right Arrow</source>
        <translation>Pfeil rechts</translation>
    </message>
    <message>
        <source>Up Arrow</source>
        <translation>Pfeil auf</translation>
    </message>
    <message>
        <source>Down Arrow</source>
        <translation>Pfeil ab</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>Pos 1</translation>
    </message>
    <message>
        <source>End</source>
        <translation>Ende</translation>
    </message>
    <message>
        <source>Comma</source>
        <translation>Komma</translation>
    </message>
    <message>
        <source>Period</source>
        <translation>Punkt</translation>
    </message>
    <message>
        <source>Semicolon</source>
        <translation>Semikolon</translation>
    </message>
    <message>
        <source>Colon</source>
        <translation>Doppelpunkt</translation>
    </message>
    <message>
        <source>Apostrophe</source>
        <translation>Apostroph</translation>
    </message>
    <message>
        <source>Quotation Mark</source>
        <translation>Anführungszeichen</translation>
    </message>
    <message>
        <source>Grave</source>
        <translation>Gravis</translation>
    </message>
    <message>
        <source>Acute</source>
        <translation>Akut</translation>
    </message>
    <message>
        <source>Circumflex</source>
        <translation>Zirkumflex</translation>
    </message>
    <message>
        <source>Diaeresis</source>
        <translation>Trema</translation>
    </message>
    <message>
        <source>Tilde</source>
        <translation>Tilde</translation>
    </message>
    <message>
        <source>Exclamation Mark</source>
        <translation>Ausrufezeichen</translation>
    </message>
    <message>
        <source>Question Mark</source>
        <translation>Fragezeichen</translation>
    </message>
    <message>
        <source>Left Parenthesis</source>
        <translation>Klammer auf</translation>
    </message>
    <message>
        <source>Right Parenthesis</source>
        <translation>Klammer zu</translation>
    </message>
    <message>
        <source>Left Bracket</source>
        <translation>Eckige Klammer auf</translation>
    </message>
    <message>
        <source>Right Bracket</source>
        <translation>Eckige Klammer zu</translation>
    </message>
    <message>
        <source>Left Brace</source>
        <translation>Geschweifte Klammer auf</translation>
    </message>
    <message>
        <source>Right Brace</source>
        <translation>Geschweifte Klammer zu</translation>
    </message>
    <message>
        <source>Less Than</source>
        <translation>Kleiner als</translation>
    </message>
    <message>
        <source>Greater Than</source>
        <translation>Größer als</translation>
    </message>
    <message>
        <source>Minus</source>
        <translation>Minus</translation>
    </message>
    <message>
        <source>Underscore</source>
        <translation>Unterstrich</translation>
    </message>
    <message>
        <source>Plus</source>
        <translation>Plus</translation>
    </message>
    <message>
        <source>Equals</source>
        <translation>Gleich</translation>
    </message>
    <message>
        <source>Asterisk</source>
        <translation>Stern</translation>
    </message>
    <message>
        <source>Slash</source>
        <translation>Schrägstrich</translation>
    </message>
    <message>
        <source>Backslash</source>
        <translation>Umgekehrter Schrägstrich</translation>
    </message>
    <message>
        <source>Vertical Bar</source>
        <translation>Senkrechter Strich</translation>
    </message>
    <message>
        <source>Number Sign</source>
        <translation>Raute</translation>
    </message>
    <message>
        <source>Dollar</source>
        <translation>Dollar</translation>
    </message>
    <message>
        <source>Percent</source>
        <translation>Prozent</translation>
    </message>
    <message>
        <source>Ampersand</source>
        <translation>Und-Zeichen</translation>
    </message>
    <message>
        <source>At</source>
        <translation>At-Zeichen</translation>
    </message>
    <message>
        <source>Backspace</source>
        <translation>Rücktaste</translation>
    </message>
    <message>
        <source>Forward Delete</source>
        <translation>Entfernen</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Hilfe</translation>
    </message>
    <message>
        <source>Menu Key</source>
        <translation>Menütaste</translation>
    </message>
    <message>
        <source>Keypad %1</source>
        <translation>Ziffernblock %1</translation>
    </message>
    <message>
        <source>Key %1</source>
        <translation>Taste %1</translation>
    </message>
</context>
<context>
    <name>TarnwellPref</name>
    <message>
        <source>Effects come with the Tarnwell plug-in, which is not installed.</source>
        <translation>Effekte gehören zum Plug-in von Tarnwell, das hier nicht installiert ist.</translation>
    </message>
    <message>
        <source>10.4+ Only</source>
        <translation>Nur ab 10.4</translation>
    </message>
    <message>
        <source>None</source>
        <translation>Keins</translation>
    </message>
    <message>
        <source>No Applications Configured</source>
        <translation>Keine Programme eingerichtet</translation>
    </message>
    <message>
        <source>The interface file &quot;%1&quot; is missing from the pane.</source>
        <translation>Die Oberflächendatei „%1“ fehlt im Paket.</translation>
    </message>
    <message>
        <source>The interface of the pane is incomplete: %1 is missing.</source>
        <translation>Die Oberfläche ist unvollständig: %1 fehlt.</translation>
    </message>
    <message>
        <source>Restore Original Shortcut</source>
        <translation>Ursprüngliches Kürzel wiederherstellen</translation>
    </message>
    <message>
        <source>Restore</source>
        <translation>Wiederherstellen</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Are you sure you want to restore the original keyboard shortcut for &quot;%@&quot;? Doing so will remove the shortcut from &quot;%@&quot; as it uses the same shortcut key as the original shortcut for this item.</source>
        <translation>Möchten Sie das ursprüngliche Tastenkürzel von „%@“ wirklich wiederherstellen? Dadurch verliert „%@“ sein Kürzel, denn es benutzt dasselbe wie das ursprüngliche dieses Menüpunkts.</translation>
    </message>
    <message>
        <source>Are you sure you want to restore the original keyboard shortcut for &quot;%@&quot;?</source>
        <translation>Möchten Sie das ursprüngliche Tastenkürzel von „%@“ wirklich wiederherstellen?</translation>
    </message>
    <message>
        <source>Remove All Shortcuts</source>
        <translation>Alle Tastenkürzel entfernen</translation>
    </message>
    <message>
        <source>Proceed</source>
        <translation>Fortfahren</translation>
    </message>
    <message>
        <source>Are you sure you want to remove all customized shortcuts for &quot;%@&quot;? This action cannot be undone.</source>
        <translation>Möchten Sie wirklich alle geänderten Tastenkürzel von „%@“ entfernen? Das lässt sich nicht rückgängig machen.</translation>
    </message>
    <message>
        <source>Choose an Application</source>
        <translation>Programm auswählen</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>Hinzufügen</translation>
    </message>
    <message>
        <source>Checking...</source>
        <translation>Suche läuft ...</translation>
    </message>
    <message>
        <source>Never checked for updates.</source>
        <translation>Noch nie nach Updates gesucht.</translation>
    </message>
    <message>
        <source>The updater ended without a result.</source>
        <translation>Das Update-Programm endete ohne Ergebnis.</translation>
    </message>
    <message>
        <source>Since %@, a lock of the user %@ has kept the updater from starting.</source>
        <translation>Seit %@ hindert eine Sperre des Benutzers %@ das Update-Programm am Start.</translation>
    </message>
    <message>
        <source>Failed. Error %d. %s</source>
        <translation>Fehlgeschlagen. Fehler %d. %s</translation>
    </message>
    <message>
        <source>Cannot load %@</source>
        <translation>%@ kann nicht geladen werden</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>"%@" was not restored: its shortcut was changed elsewhere while the question was open.</source>
        <translation>„%@“ wurde nicht wiederhergestellt: Das Tastenkürzel wurde anderswo geändert, während die Frage offen war.</translation>
    </message>
    <message>
        <source>"%@" was not restored: its stored record does not match the item that is shown.</source>
        <translation>„%@“ wurde nicht wiederhergestellt: Der gespeicherte Eintrag passt nicht zum gezeigten Menüpunkt.</translation>
    </message>
    <message>
        <source>Nothing was removed: the shortcuts were changed elsewhere while the question was open.</source>
        <translation>Nichts wurde entfernt: Die Tastenkürzel wurden anderswo geändert, während die Frage offen war.</translation>
    </message>
    <message>
        <source>Nothing Was Changed</source>
        <translation>Nichts wurde geändert</translation>
    </message>
    <message>
        <source>The present shortcuts could not be kept for bringing them back: %1

Do you want to go on without? What is changed now cannot be brought back then.</source>
        <translation>Die jetzigen Tastenkürzel konnten nicht zum Zurückholen aufbewahrt werden: %1

Möchten Sie trotzdem fortfahren? Was jetzt geändert wird, lässt sich dann nicht zurückholen.</translation>
    </message>
    <message>
        <source>Go On</source>
        <translation>Fortfahren</translation>
    </message>
    <message>
        <source>Press the keys of a shortcut</source>
        <translation>Tasten eines Kürzels drücken</translation>
    </message>
    <message>
        <source>1 shortcut</source>
        <translation>1 Tastenkürzel</translation>
    </message>
    <message>
        <source>%1 shortcuts</source>
        <translation>%1 Tastenkürzel</translation>
    </message>
    <message>
        <source>1 application</source>
        <translation>1 Programm</translation>
    </message>
    <message>
        <source>%1 applications</source>
        <translation>%1 Programme</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1 von %2</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>Nothing to Bring Back</source>
        <translation>Nichts zum Zurückholen</translation>
    </message>
    <message>
        <source>Shortcuts are kept here whenever you restore or remove some.</source>
        <translation>Hier werden Tastenkürzel aufbewahrt, wenn Sie welche wiederherstellen oder entfernen.</translation>
    </message>
    <message>
        <source>These shortcuts cannot be read: %1</source>
        <translation>Diese Tastenkürzel lassen sich nicht lesen: %1</translation>
    </message>
    <message>
        <source>Bring Back Shortcuts</source>
        <translation>Tastenkürzel zurückholen</translation>
    </message>
    <message>
        <source>Bring Back</source>
        <translation>Zurückholen</translation>
    </message>
    <message>
        <source>Do you want to replace all present shortcuts by those of %1 (%2)? The present ones are kept, so that they can be brought back in turn.</source>
        <translation>Möchten Sie alle jetzigen Tastenkürzel durch die vom %1 (%2) ersetzen? Die jetzigen werden aufbewahrt und lassen sich ihrerseits zurückholen.</translation>
    </message>
    <message>
        <source>Export Shortcuts</source>
        <translation>Tastenkürzel exportieren</translation>
    </message>
    <message>
        <source>Tarnwell Shortcuts</source>
        <translation>Tarnwell-Tastenkürzel</translation>
    </message>
    <message>
        <source>The Shortcuts Were Not Exported</source>
        <translation>Die Tastenkürzel wurden nicht exportiert</translation>
    </message>
    <message>
        <source>&quot;%1&quot; cannot be written: %2</source>
        <translation>„%1“ lässt sich nicht schreiben: %2</translation>
    </message>
    <message>
        <source>Import Shortcuts</source>
        <translation>Tastenkürzel importieren</translation>
    </message>
    <message>
        <source>Exported shortcuts (*.plist)</source>
        <translation>Exportierte Tastenkürzel (*.plist)</translation>
    </message>
    <message>
        <source>All files (*)</source>
        <translation>Alle Dateien (*)</translation>
    </message>
    <message>
        <source>Nothing Was Imported</source>
        <translation>Nichts wurde importiert</translation>
    </message>
    <message>
        <source>&quot;%1&quot; cannot be imported. %2</source>
        <translation>„%1“ lässt sich nicht importieren. %2</translation>
    </message>
    <message>
        <source>Nothing to Import</source>
        <translation>Nichts zu importieren</translation>
    </message>
    <message>
        <source>You have every complete shortcut of &quot;%1&quot; already.</source>
        <translation>Sie haben schon alle vollständigen Tastenkürzel aus „%1“.</translation>
    </message>
    <message>
        <source>Your changes are kept in this window but could not be stored: %1</source>
        <translation>Ihre Änderungen bleiben in diesem Fenster, konnten aber nicht gespeichert werden: %1</translation>
    </message>
    <message>
        <source>Your changes are kept in this window but still could not be stored: %1</source>
        <translation>Ihre Änderungen bleiben in diesem Fenster, konnten aber auch jetzt nicht gespeichert werden: %1</translation>
    </message>
    <message>
        <source>Your Changes Are Not Stored</source>
        <translation>Ihre Änderungen sind nicht gespeichert</translation>
    </message>
    <message>
        <source>Changes that you made in this window could not be stored: %1
If you close it without storing them, they are lost.</source>
        <translation>Änderungen, die Sie in diesem Fenster vorgenommen haben, konnten nicht gespeichert werden: %1
Wenn Sie es schließen, ohne sie zu speichern, gehen sie verloren.</translation>
    </message>
    <message>
        <source>Try Again</source>
        <translation>Erneut versuchen</translation>
    </message>
    <message>
        <source>Close Without Storing</source>
        <translation>Schließen, ohne zu speichern</translation>
    </message>
    <message>
        <source>Keep Open</source>
        <translation>Offen lassen</translation>
    </message>
    <message>
        <source>A change of yours could not be stored in time: another program has changed the same setting. This window shows what is stored.</source>
        <translation>Eine Ihrer Änderungen konnte nicht rechtzeitig gespeichert werden: Ein anderes Programm hat dieselbe Einstellung geändert. Dieses Fenster zeigt, was gespeichert ist.</translation>
    </message>
    <message>
        <source>The stored settings were damaged. They are kept as &quot;%1&quot;, and new ones were begun.</source>
        <translation>Die gespeicherten Einstellungen waren beschädigt. Sie sind als „%1“ aufbewahrt, und neue wurden begonnen.</translation>
    </message>
    <message>
        <source>Left out as incomplete: %1. The first one: %2</source>
        <translation>Weggelassen, weil unvollständig: %1. Das erste: %2</translation>
    </message>
    <message>
        <source>The file holds %1. Importing it adds %2, replaces %3 and leaves %4 as they are. Do you want to import it?</source>
        <translation>Die Datei enthält %1. Beim Import kommen %2 hinzu, %3 werden ersetzt, und %4 bleiben, wie sie sind. Möchten Sie sie importieren?</translation>
    </message>
    <message>
        <source>Import</source>
        <translation>Importieren</translation>
    </message>
    <message>
        <source>Export Exclude List</source>
        <translation>Ausnahmeliste exportieren</translation>
    </message>
    <message>
        <source>Tarnwell Exclude List</source>
        <translation>Tarnwell-Ausnahmeliste</translation>
    </message>
    <message>
        <source>The Exclude List Was Not Exported</source>
        <translation>Die Ausnahmeliste wurde nicht exportiert</translation>
    </message>
    <message>
        <source>No application of yours is on it any more. Nothing was written to &quot;%1&quot;.</source>
        <translation>Es steht kein Programm von Ihnen mehr darauf. In „%1“ wurde nichts geschrieben.</translation>
    </message>
    <message>
        <source>Import Exclude List</source>
        <translation>Ausnahmeliste importieren</translation>
    </message>
    <message>
        <source>Exported exclude lists (*.plist)</source>
        <translation>Exportierte Ausnahmelisten (*.plist)</translation>
    </message>
    <message>
        <source>“%@” already has this combination.</source>
        <translation>Diese Kombination gehört schon „%@“.</translation>
    </message>
    <message>
        <source>“%@” of %@ already has this combination.</source>
        <translation>Diese Kombination gehört schon „%@“ von %@.</translation>
    </message>
    <message>
        <source>This key cannot be the hot key</source>
        <translation>Diese Taste kann nicht das Kürzel sein</translation>
    </message>
    <message>
        <source>Add Control, Option or Command</source>
        <translation>Zusammen mit Steuerung, Alt oder Super drücken</translation>
    </message>
    <message>
        <source>Tarnwell does not run: its plug-in is not installed in Library/Hullforges.</source>
        <translation>Tarnwell läuft nicht: Das Plug-in ist nicht in Library/Hullforges installiert.</translation>
    </message>
    <message>
        <source>Tarnwell does not change the applications of the root user.</source>
        <translation>Tarnwell ändert die Programme des Root-Benutzers nicht.</translation>
    </message>
    <message>
        <source>No shortcut matches “%@”.</source>
        <translation>Kein Tastenkürzel passt zu „%@“.</translation>
    </message>
</context>
<context>
    <name>tarnwell::exclude::ExcludeTableModel</name>
    <message>
        <source>Predefined</source>
        <translation>Vordefiniert</translation>
    </message>
</context>
<context>
    <name>tarnwell::ui::ApplicationBrowser</name>
    <message>
        <source>&quot;%1&quot; is not an application.</source>
        <translation>„%1“ ist kein Programm.</translation>
    </message>
    <message>
        <source>Choose a bundle, a desktop entry or a program.</source>
        <translation>Wählen Sie ein Bündel, einen Menüeintrag oder ein ausführbares Programm.</translation>
    </message>
</context>
<context>
    <name>tarnwell::ui::ApplicationChooser</name>
    <message>
        <source>No application matches the search.</source>
        <translation>Kein Programm passt zur Suche.</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Suchen</translation>
    </message>
    <message>
        <source>Search applications</source>
        <translation>Programme suchen</translation>
    </message>
    <message>
        <source>Applications</source>
        <translation>Programme</translation>
    </message>
    <message>
        <source>&amp;Browse…</source>
        <translation>&amp;Durchsuchen …</translation>
    </message>
    <message>
        <source>Chooses a bundle, a desktop entry or a program that is not in the list</source>
        <translation>Wählt ein Bündel, einen Menüeintrag oder ein Programm, das nicht in der Liste steht</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Nothing is chosen yet.</source>
        <translation>Noch nichts gewählt.</translation>
    </message>
    <message>
        <source>Chosen: %1</source>
        <translation>Gewählt: %1</translation>
    </message>
</context>
<context>
    <name>tarnwell::ui::ApplicationChooserModel</name>
    <message>
        <source>%1, running</source>
        <translation>%1, läuft</translation>
    </message>
    <message>
        <source>Running now</source>
        <translation>Läuft gerade</translation>
    </message>
    <message>
        <source>Running now – %1</source>
        <translation>Läuft gerade – %1</translation>
    </message>
</context>
</TS>
