<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>AboutSheet</name>
    <message>
        <source>About Velmara</source>
        <translation>Über Velmara</translation>
    </message>
    <message>
        <source>Removes noise from photographs.
Copyright 2026 The Velmara developers.
Free software under the GNU General Public License,
version 3 or later. There is no warranty.</source>
        <translation>Entfernt Rauschen aus Fotos.
Copyright 2026 Die Entwickler von Velmara.
Freie Software unter der GNU General Public License,
Version 3 oder neuer. Ohne jede Gewährleistung.</translation>
    </message>
    <message>
        <source>It is built with</source>
        <translation>Gebaut mit</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
    <message>
        <source>Copy the versions, for a report</source>
        <translation>Versionen für einen Bericht kopieren</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
</context>
<context>
    <name>Batch</name>
    <message>
        <source>Deep</source>
        <translation>Deep</translation>
    </message>
    <message>
        <source>Auto</source>
        <translation>Auto</translation>
    </message>
    <message>
        <source>Level %1</source>
        <translation>Stufe %1</translation>
    </message>
    <message>
        <source>none found</source>
        <translation>keines gefunden</translation>
    </message>
    <message>
        <source>%1 dB, try Deep</source>
        <translation>%1 dB, Deep versuchen</translation>
    </message>
    <message>
        <source>%1 dB</source>
        <translation>%1 dB</translation>
    </message>
    <message>
        <source>%1 %</source>
        <translation>%1 %</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Fertig</translation>
    </message>
    <message>
        <source>Passed over: %1</source>
        <translation>Übersprungen: %1</translation>
    </message>
    <message>
        <source>Stopped</source>
        <translation>Gestoppt</translation>
    </message>
    <message>
        <source>Failed: %1</source>
        <translation>Fehlgeschlagen: %1</translation>
    </message>
    <message>
        <source>Less than a minute left</source>
        <translation>Noch weniger als eine Minute</translation>
    </message>
    <message numerus="yes">
        <source>About %n minute(s) left</source>
        <translation>
            <numerusform>Noch etwa %n Minute</numerusform>
            <numerusform>Noch etwa %n Minuten</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>About %n hour(s) left</source>
        <translation>
            <numerusform>Noch etwa %n Stunde</numerusform>
            <numerusform>Noch etwa %n Stunden</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 of %n photo(s) denoised</source>
        <translation>
            <numerusform>%1 von %n Foto entrauscht</numerusform>
            <numerusform>%1 von %n Fotos entrauscht</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 passed over</source>
        <translation>%1 übersprungen</translation>
    </message>
    <message>
        <source>%1 failed</source>
        <translation>%1 fehlgeschlagen</translation>
    </message>
    <message>
        <source>%1 stopped</source>
        <translation>%1 gestoppt</translation>
    </message>
</context>
<context>
    <name>BatchWindow</name>
    <message>
        <source>Batch Process</source>
        <translation>Stapelverarbeitung</translation>
    </message>
    <message>
        <source>Add Photos…</source>
        <translation>Fotos hinzufügen …</translation>
    </message>
    <message>
        <source>Add Folder…</source>
        <translation>Ordner hinzufügen …</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Entfernen</translation>
    </message>
    <message>
        <source>Drop photos and folders here</source>
        <translation>Fotos und Ordner hier ablegen</translation>
    </message>
    <message>
        <source>Photos of the batch</source>
        <translation>Fotos des Stapels</translation>
    </message>
    <message>
        <source>Strength:</source>
        <translation>Stärke:</translation>
    </message>
    <message>
        <source>Format:</source>
        <translation>Format:</translation>
    </message>
    <message>
        <source>Save in:</source>
        <translation>Speichern in:</translation>
    </message>
    <message>
        <source>Keep the folders of added folders</source>
        <translation>Unterordner hinzugefügter Ordner beibehalten</translation>
    </message>
    <message>
        <source>Name:</source>
        <translation>Name:</translation>
    </message>
    <message>
        <source>If it is there:</source>
        <translation>Falls vorhanden:</translation>
    </message>
    <message>
        <source>What failed</source>
        <translation>Was fehlgeschlagen ist</translation>
    </message>
    <message>
        <source>Progress of the batch</source>
        <translation>Fortschritt des Stapels</translation>
    </message>
    <message>
        <source>Show in Folder</source>
        <translation>Im Ordner zeigen</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Pause</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Stoppen</translation>
    </message>
    <message>
        <source>Denoise</source>
        <translation>Entrauschen</translation>
    </message>
</context>
<context>
    <name>DataStore</name>
    <message>
        <source>The application&apos;s data could not be saved.</source>
        <translation>Die Daten der Anwendung konnten nicht gespeichert werden.</translation>
    </message>
    <message>
        <source>Could not save changes while quitting. Quit anyway?</source>
        <translation>Beim Beenden konnten die Änderungen nicht gespeichert werden. Trotzdem beenden?</translation>
    </message>
    <message>
        <source>Quitting now will lose any changes you have made since the last successful save</source>
        <translation>Wenn Sie jetzt beenden, gehen alle Änderungen seit dem letzten erfolgreichen Speichern verloren</translation>
    </message>
    <message>
        <source>Quit anyway</source>
        <translation>Trotzdem beenden</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
</context>
<context>
    <name>ExportOptionsView</name>
    <message>
        <source>Format:</source>
        <translation>Format:</translation>
    </message>
    <message>
        <source>Format</source>
        <translation>Format</translation>
    </message>
    <message>
        <source>Quality:</source>
        <translation>Qualität:</translation>
    </message>
    <message>
        <source>Quality</source>
        <translation>Qualität</translation>
    </message>
</context>
<context>
    <name>FeedbackPreview</name>
    <message>
        <source>[%1 before this are sent too]</source>
        <translation>[%1 davor werden ebenfalls gesendet]</translation>
    </message>
    <message>
        <source>not included</source>
        <translation>nicht enthalten</translation>
    </message>
    <message>
        <source>not readable</source>
        <translation>nicht lesbar</translation>
    </message>
    <message>
        <source>Application: %1</source>
        <translation>Anwendung: %1</translation>
    </message>
    <message>
        <source>E-mail address: %1</source>
        <translation>E-Mail-Adresse: %1</translation>
    </message>
    <message>
        <source>Kind of feedback: %1</source>
        <translation>Art des Feedbacks: %1</translation>
    </message>
    <message>
        <source>Serial number of this computer: %1</source>
        <translation>Seriennummer dieses Computers: %1</translation>
    </message>
    <message>
        <source>Web site: %1</source>
        <translation>Website: %1</translation>
    </message>
    <message>
        <source>Experience: %1</source>
        <translation>Erfahrung: %1</translation>
    </message>
    <message>
        <source>Usage information: %1</source>
        <translation>Nutzungsdaten: %1</translation>
    </message>
    <message>
        <source>Log: %1</source>
        <translation>Protokoll: %1</translation>
    </message>
    <message>
        <source>Reading what would be sent…</source>
        <translation>Zu sendende Daten werden gelesen …</translation>
    </message>
</context>
<context>
    <name>MainMenu</name>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Datei</translation>
    </message>
    <message>
        <source>&amp;Open…</source>
        <translation>Ö&amp;ffnen …</translation>
    </message>
    <message>
        <source>&amp;Batch Process…</source>
        <translation>S&amp;tapelverarbeitung …</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>Schl&amp;ießen</translation>
    </message>
    <message>
        <source>&amp;Save…</source>
        <translation>&amp;Speichern …</translation>
    </message>
    <message>
        <source>Save &amp;As…</source>
        <translation>Speichern &amp;unter …</translation>
    </message>
    <message>
        <source>Show in &amp;Folder</source>
        <translation>Im &amp;Ordner zeigen</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>&amp;Beenden</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>&amp;Bearbeiten</translation>
    </message>
    <message>
        <source>&amp;Copy Result</source>
        <translation>Ergebnis &amp;kopieren</translation>
    </message>
    <message>
        <source>&amp;Paste</source>
        <translation>&amp;Einfügen</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>&amp;Ansicht</translation>
    </message>
    <message>
        <source>&amp;Single</source>
        <translation>&amp;Einzeln</translation>
    </message>
    <message>
        <source>S&amp;plit</source>
        <translation>&amp;Geteilt</translation>
    </message>
    <message>
        <source>&amp;Dual</source>
        <translation>&amp;Nebeneinander</translation>
    </message>
    <message>
        <source>Removed &amp;Noise</source>
        <translation>Entferntes &amp;Rauschen</translation>
    </message>
    <message>
        <source>Zoom &amp;In</source>
        <translation>&amp;Vergrößern</translation>
    </message>
    <message>
        <source>Zoom &amp;Out</source>
        <translation>Ver&amp;kleinern</translation>
    </message>
    <message>
        <source>&amp;Fit To Screen</source>
        <translation>Ein&amp;passen</translation>
    </message>
    <message>
        <source>&amp;Actual Size</source>
        <translation>&amp;Originalgröße</translation>
    </message>
    <message>
        <source>Dou&amp;ble Size</source>
        <translation>&amp;Doppelte Größe</translation>
    </message>
    <message>
        <source>&amp;Denoise</source>
        <translation>&amp;Entrauschen</translation>
    </message>
    <message>
        <source>&amp;Auto Mode</source>
        <translation>&amp;Automatik</translation>
    </message>
    <message>
        <source>&amp;Deep</source>
        <translation>&amp;Deep</translation>
    </message>
    <message>
        <source>&amp;Stronger</source>
        <translation>&amp;Stärker</translation>
    </message>
    <message>
        <source>&amp;Weaker</source>
        <translation>S&amp;chwächer</translation>
    </message>
    <message>
        <source>Sto&amp;p</source>
        <translation>Sto&amp;ppen</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Hilfe</translation>
    </message>
    <message>
        <source>Velmara &amp;Help</source>
        <translation>Velmara-&amp;Hilfe</translation>
    </message>
    <message>
        <source>&amp;Keyboard Shortcuts</source>
        <translation>&amp;Tastaturkürzel</translation>
    </message>
    <message>
        <source>&amp;Tips</source>
        <translation>T&amp;ipps</translation>
    </message>
    <message>
        <source>&amp;Feedback…</source>
        <translation>&amp;Feedback …</translation>
    </message>
    <message>
        <source>&amp;About Velmara</source>
        <translation>Ü&amp;ber Velmara</translation>
    </message>
</context>
<context>
    <name>MainScreenViewController</name>
    <message>
        <source>100 %</source>
        <translation>100 %</translation>
    </message>
    <message>
        <source>10 %</source>
        <translation>10 %</translation>
    </message>
    <message>
        <source>Before</source>
        <translation>Vorher</translation>
    </message>
    <message>
        <source>After</source>
        <translation>Nachher</translation>
    </message>
    <message>
        <source>The noise is stronger than the levels reach: press D for Deep</source>
        <translation>Das Rauschen ist stärker, als die Stufen reichen: D drücken für Deep</translation>
    </message>
    <message>
        <source>Noise and Strength</source>
        <translation>Rauschen und Stärke</translation>
    </message>
</context>
<context>
    <name>NoiseGauge</name>
    <message>
        <source>The noise asks for %1 of 10, %2 is chosen</source>
        <translation>Das Rauschen verlangt %1 von 10, gewählt ist %2</translation>
    </message>
    <message>
        <source>Noise: %1 dB. It asks for %2 of 10, %3 is chosen</source>
        <translation>Rauschen: %1 dB. Es verlangt %2 von 10, gewählt ist %3</translation>
    </message>
</context>
<context>
    <name>PastedPicture</name>
    <message>
        <source>Pasted Picture</source>
        <translation>Eingefügtes Bild</translation>
    </message>
    <message>
        <source>too many pictures were pasted</source>
        <translation>es wurden zu viele Bilder eingefügt</translation>
    </message>
    <message>
        <source>there is no picture on the clipboard</source>
        <translation>in der Zwischenablage ist kein Bild</translation>
    </message>
</context>
<context>
    <name>Questions</name>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>File Format Not Suppored</source>
        <translation>Dateiformat nicht unterstützt</translation>
    </message>
    <message>
        <source>Replace the original “%1”?</source>
        <translation>Original „%1“ ersetzen?</translation>
    </message>
    <message>
        <source>This is the photo you opened. Its file will hold the denoised photo instead, and the original cannot be brought back.</source>
        <translation>Dies ist das Foto, das Sie geöffnet haben. Seine Datei enthält danach das entrauschte Foto, und das Original lässt sich nicht zurückholen.</translation>
    </message>
    <message>
        <source>Replace</source>
        <translation>Ersetzen</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>“%1” was not saved.</source>
        <translation>„%1“ wurde nicht gespeichert.</translation>
    </message>
    <message>
        <source>The photo could not be denoised.</source>
        <translation>Das Foto konnte nicht entrauscht werden.</translation>
    </message>
    <message>
        <source>Saved %1</source>
        <translation>%1 gespeichert</translation>
    </message>
</context>
<context>
    <name>Rating</name>
    <message>
        <source>Would you like to rate the app on the Mac App Store?</source>
        <translation>Möchten Sie die App im Mac App Store bewerten?</translation>
    </message>
    <message>
        <source>YES</source>
        <translation>JA</translation>
    </message>
    <message>
        <source>NO</source>
        <translation>NEIN</translation>
    </message>
</context>
<context>
    <name>RecentMenu</name>
    <message>
        <source>%1 in %2</source>
        <translation>%1 in %2</translation>
    </message>
    <message>
        <source>&amp;Clear List</source>
        <translation>&amp;Liste leeren</translation>
    </message>
    <message>
        <source>Open &amp;Recent</source>
        <translation>&amp;Zuletzt geöffnet</translation>
    </message>
</context>
<context>
    <name>SaveChangesSheet</name>
    <message>
        <source>Don&apos;t Save</source>
        <translation>Nicht speichern</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Speichern</translation>
    </message>
    <message>
        <source>Do you want to save the changes made to the document &quot;%1&quot; ?</source>
        <translation>Möchten Sie die Änderungen am Dokument „%1“ speichern?</translation>
    </message>
</context>
<context>
    <name>ShortcutsSheet</name>
    <message>
        <source>Keyboard Shortcuts</source>
        <translation>Tastaturkürzel</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>On the Picture</source>
        <translation>Auf dem Bild</translation>
    </message>
    <message>
        <source>Move It</source>
        <translation>Verschieben</translation>
    </message>
    <message>
        <source>Drag</source>
        <translation>Ziehen</translation>
    </message>
    <message>
        <source>Arrow Keys</source>
        <translation>Pfeiltasten</translation>
    </message>
    <message>
        <source>Zoom at the Pointer</source>
        <translation>Am Zeiger zoomen</translation>
    </message>
    <message>
        <source>Ctrl+Wheel</source>
        <translation>Strg+Mausrad</translation>
    </message>
    <message>
        <source>Pinch</source>
        <translation>Zwei-Finger-Zoom</translation>
    </message>
    <message>
        <source>Show the Original</source>
        <translation>Original zeigen</translation>
    </message>
    <message>
        <source>Hold Space</source>
        <translation>Leertaste halten</translation>
    </message>
</context>
<context>
    <name>Strength</name>
    <message>
        <source>Strength %1 of 10</source>
        <translation>Stärke %1 von 10</translation>
    </message>
    <message>
        <source>Noise × %1</source>
        <translation>Rauschen × %1</translation>
    </message>
    <message>
        <source>No noise found</source>
        <translation>Kein Rauschen gefunden</translation>
    </message>
</context>
<context>
    <name>TipsSheet</name>
    <message>
        <source>Tips</source>
        <translation>Tipps</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Zurück</translation>
    </message>
    <message>
        <source>Open a photo</source>
        <translation>Ein Foto öffnen</translation>
    </message>
    <message>
        <source>Drop a photo on the window, or press Ctrl+O. Its file stays as it is, unless you save over it yourself.</source>
        <translation>Legen Sie ein Foto im Fenster ab oder drücken Sie Strg+O. Seine Datei bleibt, wie sie ist, es sei denn, Sie überschreiben sie selbst.</translation>
    </message>
    <message>
        <source>Let Velmara choose</source>
        <translation>Velmara wählen lassen</translation>
    </message>
    <message>
        <source>Auto measures how noisy the photo is and chooses the strength by that. Every photo starts with it.</source>
        <translation>Auto misst, wie stark das Foto rauscht, und wählt danach die Stärke. Jedes Foto beginnt damit.</translation>
    </message>
    <message>
        <source>Or choose a level</source>
        <translation>Oder eine Stufe wählen</translation>
    </message>
    <message>
        <source>The slider goes from 10 % to 100 %. A higher level takes away more noise, and some of the finest detail with it.</source>
        <translation>Der Regler reicht von 10 % bis 100 %. Eine höhere Stufe entfernt mehr Rauschen und mit ihm einige der feinsten Details.</translation>
    </message>
    <message>
        <source>Compare</source>
        <translation>Vergleichen</translation>
    </message>
    <message>
        <source>See the photo by itself, on both sides of a line you can move, or beside its result. At 100 % and 200 % you can judge the noise.</source>
        <translation>Sehen Sie das Foto allein, beiderseits einer verschiebbaren Linie oder neben seinem Ergebnis. Bei 100 % und 200 % lässt sich das Rauschen beurteilen.</translation>
    </message>
    <message>
        <source>Save the result</source>
        <translation>Das Ergebnis speichern</translation>
    </message>
    <message>
        <source>Ctrl+S filters the whole photo at its full size and saves it upright, as JPEG, TIFF, BMP, GIF or PNG.</source>
        <translation>Strg+S filtert das ganze Foto in voller Größe und speichert es aufrecht als JPEG, TIFF, BMP, GIF oder PNG.</translation>
    </message>
</context>
<context>
    <name>velmara::AlertDialog</name>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
</context>
<context>
    <name>velmara::AppDelegate</name>
    <message>
        <source>The batch is not done yet.</source>
        <translation>Der Stapel ist noch nicht fertig.</translation>
    </message>
    <message>
        <source>Results that are written stay.</source>
        <translation>Geschriebene Ergebnisse bleiben erhalten.</translation>
    </message>
    <message>
        <source>Stop and Quit</source>
        <translation>Stoppen und beenden</translation>
    </message>
    <message>
        <source>Go On</source>
        <translation>Fortsetzen</translation>
    </message>
</context>
<context>
    <name>velmara::BatchTable</name>
    <message>
        <source>Photo</source>
        <translation>Foto</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Größe</translation>
    </message>
    <message>
        <source>Noise</source>
        <translation>Rauschen</translation>
    </message>
    <message>
        <source>Strength</source>
        <translation>Stärke</translation>
    </message>
    <message>
        <source>State</source>
        <translation>Status</translation>
    </message>
    <message>
        <source>As all</source>
        <translation>Wie alle</translation>
    </message>
</context>
<context>
    <name>velmara::BatchWindow</name>
    <message>
        <source>As the photo</source>
        <translation>Wie das Foto</translation>
    </message>
    <message>
        <source>The photos&apos; folders</source>
        <translation>Ordner der Fotos</translation>
    </message>
    <message>
        <source>Choose a Folder…</source>
        <translation>Ordner wählen …</translation>
    </message>
    <message>
        <source>Keep both, with a number</source>
        <translation>Beide behalten, mit Nummer</translation>
    </message>
    <message>
        <source>Pass the photo over</source>
        <translation>Foto überspringen</translation>
    </message>
    <message>
        <source>Replace it</source>
        <translation>Ersetzen</translation>
    </message>
    <message>
        <source>{name} is the photo&apos;s name, {number} its place in the list, {folder} its folder</source>
        <translation>{name} ist der Name des Fotos, {number} sein Platz in der Liste, {folder} sein Ordner</translation>
    </message>
    <message>
        <source>Add Photos</source>
        <translation>Fotos hinzufügen</translation>
    </message>
    <message>
        <source>Images</source>
        <translation>Bilder</translation>
    </message>
    <message>
        <source>Add Folder</source>
        <translation>Ordner hinzufügen</translation>
    </message>
    <message>
        <source>Save the Results in</source>
        <translation>Ergebnisse speichern in</translation>
    </message>
    <message>
        <source>For example %1</source>
        <translation>Zum Beispiel %1</translation>
    </message>
    <message>
        <source>Looking for photos…</source>
        <translation>Fotos werden gesucht …</translation>
    </message>
    <message numerus="yes">
        <source>%n photo(s)</source>
        <translation>
            <numerusform>%n Foto</numerusform>
            <numerusform>%n Fotos</numerusform>
        </translation>
    </message>
    <message>
        <source>Denoise</source>
        <translation>Entrauschen</translation>
    </message>
    <message numerus="yes">
        <source>Denoise %n Photo(s)</source>
        <translation>
            <numerusform>%n Foto entrauschen</numerusform>
            <numerusform>%n Fotos entrauschen</numerusform>
        </translation>
    </message>
    <message>
        <source>Go On</source>
        <translation>Fortsetzen</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Pause</translation>
    </message>
    <message numerus="yes">
        <source>%1 of %n photo(s)</source>
        <translation>
            <numerusform>%1 von %n Foto</numerusform>
            <numerusform>%1 von %n Fotos</numerusform>
        </translation>
    </message>
    <message>
        <source>, paused</source>
        <translation>, angehalten</translation>
    </message>
    <message>
        <source>The batch is not done yet.</source>
        <translation>Der Stapel ist noch nicht fertig.</translation>
    </message>
    <message numerus="yes">
        <source>%n photo(s) would be left as they are. Results that are written stay.</source>
        <translation>
            <numerusform>%n Foto bliebe, wie es ist. Geschriebene Ergebnisse bleiben erhalten.</numerusform>
            <numerusform>%n Fotos blieben, wie sie sind. Geschriebene Ergebnisse bleiben erhalten.</numerusform>
        </translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Stoppen</translation>
    </message>
</context>
<context>
    <name>velmara::DraggingView</name>
    <message>
        <source>Drop a photo here, or open one</source>
        <translation>Foto hier ablegen oder öffnen</translation>
    </message>
</context>
<context>
    <name>velmara::EditingSession</name>
    <message>
        <source>Save Image</source>
        <translation>Bild speichern</translation>
    </message>
    <message>
        <source>Auto</source>
        <translation>Auto</translation>
    </message>
    <message>
        <source>Manual</source>
        <translation>Manuell</translation>
    </message>
</context>
<context>
    <name>velmara::ExportOptionsView</name>
    <message>
        <source>JPEG is always written at %1, 4:4:4: visually lossless</source>
        <translation>JPEG wird immer mit %1, 4:4:4 geschrieben: visuell verlustfrei</translation>
    </message>
</context>
<context>
    <name>velmara::FeedbackWindowController</name>
    <message>
        <source>Feedback</source>
        <translation>Feedback</translation>
    </message>
    <message>
        <source>Submit your feedback for Velmara</source>
        <translation>Senden Sie uns Ihr Feedback zu Velmara</translation>
    </message>
    <message>
        <source>Your experience is highly appreciated.</source>
        <translation>Ihre Erfahrungen sind uns sehr wichtig.</translation>
    </message>
    <message>
        <source>Email Address</source>
        <translation>E-Mail-Adresse</translation>
    </message>
    <message>
        <source>Please Select Feedback Type</source>
        <translation>Bitte Art des Feedbacks wählen</translation>
    </message>
    <message>
        <source>Share your experience</source>
        <translation>Schildern Sie Ihre Erfahrungen</translation>
    </message>
    <message>
        <source>Include Velmara log in the feedback</source>
        <translation>Protokoll von Velmara beifügen</translation>
    </message>
    <message>
        <source>Send usage information for product improvment</source>
        <translation>Nutzungsdaten zur Produktverbesserung senden</translation>
    </message>
    <message>
        <source>Your feedback is being sent, please wait.</source>
        <translation>Ihr Feedback wird gesendet, bitte warten.</translation>
    </message>
    <message>
        <source>*Invalid Email Address</source>
        <translation>*Ungültige E-Mail-Adresse</translation>
    </message>
    <message>
        <source>*Please Select Feedback Type</source>
        <translation>*Bitte Art des Feedbacks wählen</translation>
    </message>
    <message>
        <source>*Please share your experience</source>
        <translation>*Bitte schildern Sie Ihre Erfahrungen</translation>
    </message>
    <message>
        <source>Save Report…</source>
        <translation>Bericht speichern …</translation>
    </message>
    <message>
        <source>Submit</source>
        <translation>Senden</translation>
    </message>
    <message>
        <source>This build of Velmara has no feedback service to send to.
The report can be saved as a file, to be passed on by other means.</source>
        <translation>Diese Ausgabe von Velmara hat keinen Dienst für Feedback.
Der Bericht lässt sich als Datei speichern und anders weitergeben.</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>What is sent</source>
        <translation>Was gesendet wird</translation>
    </message>
    <message>
        <source>Hide the report</source>
        <translation>Bericht ausblenden</translation>
    </message>
    <message>
        <source>Show the report</source>
        <translation>Bericht anzeigen</translation>
    </message>
    <message>
        <source>Hide what is sent</source>
        <translation>Gesendetes ausblenden</translation>
    </message>
    <message>
        <source>Show what is sent</source>
        <translation>Gesendetes anzeigen</translation>
    </message>
    <message>
        <source>Internet Not Connected</source>
        <translation>Keine Verbindung zum Internet</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>The report could not be saved: %1</source>
        <translation>Der Bericht konnte nicht gespeichert werden: %1</translation>
    </message>
    <message>
        <source>Save Report</source>
        <translation>Bericht speichern</translation>
    </message>
    <message>
        <source>General Feedback</source>
        <translation>Allgemeines Feedback</translation>
    </message>
    <message>
        <source>I feel good whenerver I have used it</source>
        <translation>Ich freue mich, wann immer ich es benutze</translation>
    </message>
    <message>
        <source>I want to report a problem</source>
        <translation>Ich möchte ein Problem melden</translation>
    </message>
    <message>
        <source>Unable to understand the problem</source>
        <translation>Ich verstehe das Problem nicht</translation>
    </message>
</context>
<context>
    <name>velmara::MainScreenViewController</name>
    <message>
        <source>Open Image</source>
        <translation>Bild öffnen</translation>
    </message>
    <message>
        <source>Images</source>
        <translation>Bilder</translation>
    </message>
    <message>
        <source>Can&apos;t Process</source>
        <translation>Verarbeitung nicht möglich</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Show %1</source>
        <translation>%1 zeigen</translation>
    </message>
    <message>
        <source>The result could not be copied.</source>
        <translation>Das Ergebnis konnte nicht kopiert werden.</translation>
    </message>
    <message>
        <source>Copied</source>
        <translation>Kopiert</translation>
    </message>
    <message>
        <source>Copying…</source>
        <translation>Wird kopiert …</translation>
    </message>
    <message>
        <source>Nothing was pasted.</source>
        <translation>Es wurde nichts eingefügt.</translation>
    </message>
    <message>
        <source>Thank you for providing us the feedback.</source>
        <translation>Vielen Dank für Ihr Feedback.</translation>
    </message>
    <message>
        <source>Feedback</source>
        <translation>Feedback</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Hilfe</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Speichern</translation>
    </message>
    <message>
        <source>Batch Process</source>
        <translation>Stapelverarbeitung</translation>
    </message>
    <message>
        <source>Actual Size</source>
        <translation>Originalgröße</translation>
    </message>
    <message>
        <source>Double Size</source>
        <translation>Doppelte Größe</translation>
    </message>
    <message>
        <source>Fit To Screen</source>
        <translation>Einpassen</translation>
    </message>
    <message>
        <source>Zoom In</source>
        <translation>Vergrößern</translation>
    </message>
    <message>
        <source>Zoom Out</source>
        <translation>Verkleinern</translation>
    </message>
    <message>
        <source>Single Mode</source>
        <translation>Einzelansicht</translation>
    </message>
    <message>
        <source>Split Mode</source>
        <translation>Geteilte Ansicht</translation>
    </message>
    <message>
        <source>Dual Mode</source>
        <translation>Nebeneinander</translation>
    </message>
    <message>
        <source>Removed Noise</source>
        <translation>Entferntes Rauschen</translation>
    </message>
    <message>
        <source>Auto Mode</source>
        <translation>Automatik</translation>
    </message>
    <message>
        <source>Deep, For Strong Noise</source>
        <translation>Deep, für starkes Rauschen</translation>
    </message>
    <message>
        <source>Select Denoise Level</source>
        <translation>Stufe der Entrauschung wählen</translation>
    </message>
    <message>
        <source>Page Up, Page Down</source>
        <translation>Bild aufwärts, Bild abwärts</translation>
    </message>
    <message>
        <source>Submit Feedback</source>
        <translation>Feedback senden</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Minimize</source>
        <translation>Minimieren</translation>
    </message>
    <message>
        <source>Zoom</source>
        <translation>Maximieren</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Stoppen</translation>
    </message>
    <message>
        <source>Esc</source>
        <translation>Esc</translation>
    </message>
    <message>
        <source>Removed Noise × %1</source>
        <translation>Entferntes Rauschen × %1</translation>
    </message>
    <message>
        <source>Before</source>
        <translation>Vorher</translation>
    </message>
    <message>
        <source>After</source>
        <translation>Nachher</translation>
    </message>
    <message>
        <source>From the clipboard</source>
        <translation>Aus der Zwischenablage</translation>
    </message>
</context>
<context>
    <name>velmara::PageDots</name>
    <message>
        <source>Page %1 of %2</source>
        <translation>Seite %1 von %2</translation>
    </message>
</context>
<context>
    <name>velmara::TipsSheet</name>
    <message>
        <source>Done</source>
        <translation>Fertig</translation>
    </message>
    <message>
        <source>Next</source>
        <translation>Weiter</translation>
    </message>
</context>
</TS>
