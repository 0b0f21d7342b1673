<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr" sourcelanguage="en">
<context>
    <name>AboutSheet</name>
    <message>
        <source>About Velmara</source>
        <translation>À propos de Velmara</translation>
    </message>
    <message>
        <source>Removes noise from photographs.
Copyright 2026 The Velmara developers.
Free software under the GNU General Public License,
version 3 or later. There is no warranty.</source>
        <translation>Retire le bruit des photos.
Copyright 2026 Les développeurs de Velmara.
Logiciel libre sous la licence publique générale GNU,
version 3 ou ultérieure. Sans aucune garantie.</translation>
    </message>
    <message>
        <source>It is built with</source>
        <translation>Construit avec</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Copier</translation>
    </message>
    <message>
        <source>Copy the versions, for a report</source>
        <translation>Copier les versions, pour un rapport</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Fermer</translation>
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
        <translation>Niveau %1</translation>
    </message>
    <message>
        <source>none found</source>
        <translation>aucun trouvé</translation>
    </message>
    <message>
        <source>%1 dB, try Deep</source>
        <translation>%1 dB, essayez Deep</translation>
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
        <translation>Terminée</translation>
    </message>
    <message>
        <source>Passed over: %1</source>
        <translation>Ignorée : %1</translation>
    </message>
    <message>
        <source>Stopped</source>
        <translation>Arrêtée</translation>
    </message>
    <message>
        <source>Failed: %1</source>
        <translation>Échec : %1</translation>
    </message>
    <message>
        <source>Less than a minute left</source>
        <translation>Moins d’une minute restante</translation>
    </message>
    <message numerus="yes">
        <source>About %n minute(s) left</source>
        <translation>
            <numerusform>Environ %n minute restante</numerusform>
            <numerusform>Environ %n minutes restantes</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>About %n hour(s) left</source>
        <translation>
            <numerusform>Environ %n heure restante</numerusform>
            <numerusform>Environ %n heures restantes</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 of %n photo(s) denoised</source>
        <translation>
            <numerusform>Photo débruitée : %1 sur %n</numerusform>
            <numerusform>Photos débruitées : %1 sur %n</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 passed over</source>
        <translation>ignorées : %1</translation>
    </message>
    <message>
        <source>%1 failed</source>
        <translation>échecs : %1</translation>
    </message>
    <message>
        <source>%1 stopped</source>
        <translation>arrêtées : %1</translation>
    </message>
</context>
<context>
    <name>BatchWindow</name>
    <message>
        <source>Batch Process</source>
        <translation>Traitement par lot</translation>
    </message>
    <message>
        <source>Add Photos…</source>
        <translation>Ajouter des photos…</translation>
    </message>
    <message>
        <source>Add Folder…</source>
        <translation>Ajouter un dossier…</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Retirer</translation>
    </message>
    <message>
        <source>Drop photos and folders here</source>
        <translation>Déposez ici photos et dossiers</translation>
    </message>
    <message>
        <source>Photos of the batch</source>
        <translation>Photos du lot</translation>
    </message>
    <message>
        <source>Strength:</source>
        <translation>Intensité :</translation>
    </message>
    <message>
        <source>Format:</source>
        <translation>Format :</translation>
    </message>
    <message>
        <source>Save in:</source>
        <translation>Enregistrer dans :</translation>
    </message>
    <message>
        <source>Keep the folders of added folders</source>
        <translation>Conserver les sous-dossiers des dossiers ajoutés</translation>
    </message>
    <message>
        <source>Name:</source>
        <translation>Nom :</translation>
    </message>
    <message>
        <source>If it is there:</source>
        <translation>S’il existe déjà :</translation>
    </message>
    <message>
        <source>What failed</source>
        <translation>Ce qui a échoué</translation>
    </message>
    <message>
        <source>Progress of the batch</source>
        <translation>Progression du lot</translation>
    </message>
    <message>
        <source>Show in Folder</source>
        <translation>Afficher dans le dossier</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Pause</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Arrêter</translation>
    </message>
    <message>
        <source>Denoise</source>
        <translation>Débruiter</translation>
    </message>
</context>
<context>
    <name>DataStore</name>
    <message>
        <source>The application&apos;s data could not be saved.</source>
        <translation>Les données de l’application n’ont pas pu être enregistrées.</translation>
    </message>
    <message>
        <source>Could not save changes while quitting. Quit anyway?</source>
        <translation>Les modifications n’ont pas pu être enregistrées à la fermeture. Quitter quand même ?</translation>
    </message>
    <message>
        <source>Quitting now will lose any changes you have made since the last successful save</source>
        <translation>Si vous quittez maintenant, vous perdrez toutes les modifications faites depuis le dernier enregistrement réussi</translation>
    </message>
    <message>
        <source>Quit anyway</source>
        <translation>Quitter quand même</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
</context>
<context>
    <name>ExportOptionsView</name>
    <message>
        <source>Format:</source>
        <translation>Format :</translation>
    </message>
    <message>
        <source>Format</source>
        <translation>Format</translation>
    </message>
    <message>
        <source>Quality:</source>
        <translation>Qualité :</translation>
    </message>
    <message>
        <source>Quality</source>
        <translation>Qualité</translation>
    </message>
</context>
<context>
    <name>FeedbackPreview</name>
    <message>
        <source>[%1 before this are sent too]</source>
        <translation>[%1 qui précèdent sont également envoyés]</translation>
    </message>
    <message>
        <source>not included</source>
        <translation>non inclus</translation>
    </message>
    <message>
        <source>not readable</source>
        <translation>illisible</translation>
    </message>
    <message>
        <source>Application: %1</source>
        <translation>Application : %1</translation>
    </message>
    <message>
        <source>E-mail address: %1</source>
        <translation>Adresse e-mail : %1</translation>
    </message>
    <message>
        <source>Kind of feedback: %1</source>
        <translation>Type de commentaire : %1</translation>
    </message>
    <message>
        <source>Serial number of this computer: %1</source>
        <translation>Numéro de série de cet ordinateur : %1</translation>
    </message>
    <message>
        <source>Web site: %1</source>
        <translation>Site web : %1</translation>
    </message>
    <message>
        <source>Experience: %1</source>
        <translation>Expérience : %1</translation>
    </message>
    <message>
        <source>Usage information: %1</source>
        <translation>Données d’utilisation : %1</translation>
    </message>
    <message>
        <source>Log: %1</source>
        <translation>Journal : %1</translation>
    </message>
    <message>
        <source>Reading what would be sent…</source>
        <translation>Lecture de ce qui serait envoyé…</translation>
    </message>
</context>
<context>
    <name>MainMenu</name>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Fichier</translation>
    </message>
    <message>
        <source>&amp;Open…</source>
        <translation>&amp;Ouvrir…</translation>
    </message>
    <message>
        <source>&amp;Batch Process…</source>
        <translation>&amp;Traitement par lot…</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>&amp;Fermer</translation>
    </message>
    <message>
        <source>&amp;Save…</source>
        <translation>&amp;Enregistrer…</translation>
    </message>
    <message>
        <source>Save &amp;As…</source>
        <translation>Enregistrer &amp;sous…</translation>
    </message>
    <message>
        <source>Show in &amp;Folder</source>
        <translation>Afficher dans le &amp;dossier</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>&amp;Quitter</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>É&amp;dition</translation>
    </message>
    <message>
        <source>&amp;Copy Result</source>
        <translation>&amp;Copier le résultat</translation>
    </message>
    <message>
        <source>&amp;Paste</source>
        <translation>Co&amp;ller</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>&amp;Affichage</translation>
    </message>
    <message>
        <source>&amp;Single</source>
        <translation>&amp;Simple</translation>
    </message>
    <message>
        <source>S&amp;plit</source>
        <translation>&amp;Partagé</translation>
    </message>
    <message>
        <source>&amp;Dual</source>
        <translation>&amp;Côte à côte</translation>
    </message>
    <message>
        <source>Removed &amp;Noise</source>
        <translation>&amp;Bruit retiré</translation>
    </message>
    <message>
        <source>Zoom &amp;In</source>
        <translation>Zoom a&amp;vant</translation>
    </message>
    <message>
        <source>Zoom &amp;Out</source>
        <translation>Zoom a&amp;rrière</translation>
    </message>
    <message>
        <source>&amp;Fit To Screen</source>
        <translation>&amp;Ajuster à l’écran</translation>
    </message>
    <message>
        <source>&amp;Actual Size</source>
        <translation>&amp;Taille réelle</translation>
    </message>
    <message>
        <source>Dou&amp;ble Size</source>
        <translation>Taille &amp;double</translation>
    </message>
    <message>
        <source>&amp;Denoise</source>
        <translation>Dé&amp;bruitage</translation>
    </message>
    <message>
        <source>&amp;Auto Mode</source>
        <translation>Mode &amp;automatique</translation>
    </message>
    <message>
        <source>&amp;Deep</source>
        <translation>&amp;Deep</translation>
    </message>
    <message>
        <source>&amp;Stronger</source>
        <translation>Plus &amp;fort</translation>
    </message>
    <message>
        <source>&amp;Weaker</source>
        <translation>&amp;Moins fort</translation>
    </message>
    <message>
        <source>Sto&amp;p</source>
        <translation>A&amp;rrêter</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>A&amp;ide</translation>
    </message>
    <message>
        <source>Velmara &amp;Help</source>
        <translation>&amp;Aide de Velmara</translation>
    </message>
    <message>
        <source>&amp;Keyboard Shortcuts</source>
        <translation>&amp;Raccourcis clavier</translation>
    </message>
    <message>
        <source>&amp;Tips</source>
        <translation>As&amp;tuces</translation>
    </message>
    <message>
        <source>&amp;Feedback…</source>
        <translation>&amp;Commentaires…</translation>
    </message>
    <message>
        <source>&amp;About Velmara</source>
        <translation>À &amp;propos de Velmara</translation>
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
        <translation>Avant</translation>
    </message>
    <message>
        <source>After</source>
        <translation>Après</translation>
    </message>
    <message>
        <source>The noise is stronger than the levels reach: press D for Deep</source>
        <translation>Le bruit dépasse la portée des niveaux : appuyez sur D pour Deep</translation>
    </message>
    <message>
        <source>Noise and Strength</source>
        <translation>Bruit et intensité</translation>
    </message>
</context>
<context>
    <name>NoiseGauge</name>
    <message>
        <source>The noise asks for %1 of 10, %2 is chosen</source>
        <translation>Le bruit demande %1 sur 10, %2 est choisi</translation>
    </message>
    <message>
        <source>Noise: %1 dB. It asks for %2 of 10, %3 is chosen</source>
        <translation>Bruit : %1 dB. Il demande %2 sur 10, %3 est choisi</translation>
    </message>
</context>
<context>
    <name>PastedPicture</name>
    <message>
        <source>Pasted Picture</source>
        <translation>Image collée</translation>
    </message>
    <message>
        <source>too many pictures were pasted</source>
        <translation>trop d’images ont été collées</translation>
    </message>
    <message>
        <source>there is no picture on the clipboard</source>
        <translation>le presse-papiers ne contient pas d’image</translation>
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
        <translation>Format de fichier non pris en charge</translation>
    </message>
    <message>
        <source>Replace the original “%1”?</source>
        <translation>Remplacer l’original « %1 » ?</translation>
    </message>
    <message>
        <source>This is the photo you opened. Its file will hold the denoised photo instead, and the original cannot be brought back.</source>
        <translation>C’est la photo que vous avez ouverte. Son fichier contiendra à la place la photo débruitée, et l’original ne pourra pas être récupéré.</translation>
    </message>
    <message>
        <source>Replace</source>
        <translation>Remplacer</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>“%1” was not saved.</source>
        <translation>« %1 » n’a pas été enregistré.</translation>
    </message>
    <message>
        <source>The photo could not be denoised.</source>
        <translation>La photo n’a pas pu être débruitée.</translation>
    </message>
    <message>
        <source>Saved %1</source>
        <translation>%1 enregistré</translation>
    </message>
</context>
<context>
    <name>Rating</name>
    <message>
        <source>Would you like to rate the app on the Mac App Store?</source>
        <translation>Souhaitez-vous noter l’app sur le Mac App Store ?</translation>
    </message>
    <message>
        <source>YES</source>
        <translation>OUI</translation>
    </message>
    <message>
        <source>NO</source>
        <translation>NON</translation>
    </message>
</context>
<context>
    <name>RecentMenu</name>
    <message>
        <source>%1 in %2</source>
        <translation>%1 dans %2</translation>
    </message>
    <message>
        <source>&amp;Clear List</source>
        <translation>&amp;Effacer la liste</translation>
    </message>
    <message>
        <source>Open &amp;Recent</source>
        <translation>Ouvrir un &amp;récent</translation>
    </message>
</context>
<context>
    <name>SaveChangesSheet</name>
    <message>
        <source>Don&apos;t Save</source>
        <translation>Ne pas enregistrer</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Enregistrer</translation>
    </message>
    <message>
        <source>Do you want to save the changes made to the document &quot;%1&quot; ?</source>
        <translation>Voulez-vous enregistrer les modifications apportées au document « %1 » ?</translation>
    </message>
</context>
<context>
    <name>ShortcutsSheet</name>
    <message>
        <source>Keyboard Shortcuts</source>
        <translation>Raccourcis clavier</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Fermer</translation>
    </message>
    <message>
        <source>On the Picture</source>
        <translation>Sur l’image</translation>
    </message>
    <message>
        <source>Move It</source>
        <translation>Déplacer</translation>
    </message>
    <message>
        <source>Drag</source>
        <translation>Glisser</translation>
    </message>
    <message>
        <source>Arrow Keys</source>
        <translation>Touches fléchées</translation>
    </message>
    <message>
        <source>Zoom at the Pointer</source>
        <translation>Zoomer sous le pointeur</translation>
    </message>
    <message>
        <source>Ctrl+Wheel</source>
        <translation>Ctrl+Molette</translation>
    </message>
    <message>
        <source>Pinch</source>
        <translation>Pincement</translation>
    </message>
    <message>
        <source>Show the Original</source>
        <translation>Voir l’original</translation>
    </message>
    <message>
        <source>Hold Space</source>
        <translation>Maintenir Espace</translation>
    </message>
</context>
<context>
    <name>Strength</name>
    <message>
        <source>Strength %1 of 10</source>
        <translation>Intensité %1 sur 10</translation>
    </message>
    <message>
        <source>Noise × %1</source>
        <translation>Bruit × %1</translation>
    </message>
    <message>
        <source>No noise found</source>
        <translation>Aucun bruit trouvé</translation>
    </message>
</context>
<context>
    <name>TipsSheet</name>
    <message>
        <source>Tips</source>
        <translation>Astuces</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Précédent</translation>
    </message>
    <message>
        <source>Open a photo</source>
        <translation>Ouvrir une photo</translation>
    </message>
    <message>
        <source>Drop a photo on the window, or press Ctrl+O. Its file stays as it is, unless you save over it yourself.</source>
        <translation>Déposez une photo sur la fenêtre ou appuyez sur Ctrl+O. Son fichier reste tel quel, sauf si vous l’écrasez vous-même.</translation>
    </message>
    <message>
        <source>Let Velmara choose</source>
        <translation>Laisser Velmara choisir</translation>
    </message>
    <message>
        <source>Auto measures how noisy the photo is and chooses the strength by that. Every photo starts with it.</source>
        <translation>Auto mesure le bruit de la photo et choisit l’intensité en conséquence. Chaque photo commence ainsi.</translation>
    </message>
    <message>
        <source>Or choose a level</source>
        <translation>Ou choisir un niveau</translation>
    </message>
    <message>
        <source>The slider goes from 10 % to 100 %. A higher level takes away more noise, and some of the finest detail with it.</source>
        <translation>Le curseur va de 10 % à 100 %. Un niveau plus élevé retire plus de bruit, et avec lui un peu des détails les plus fins.</translation>
    </message>
    <message>
        <source>Compare</source>
        <translation>Comparer</translation>
    </message>
    <message>
        <source>See the photo by itself, on both sides of a line you can move, or beside its result. At 100 % and 200 % you can judge the noise.</source>
        <translation>Voyez la photo seule, de part et d’autre d’une ligne mobile ou à côté de son résultat. À 100 % et 200 %, vous pouvez juger du bruit.</translation>
    </message>
    <message>
        <source>Save the result</source>
        <translation>Enregistrer le résultat</translation>
    </message>
    <message>
        <source>Ctrl+S filters the whole photo at its full size and saves it upright, as JPEG, TIFF, BMP, GIF or PNG.</source>
        <translation>Ctrl+S filtre la photo entière en pleine taille et l’enregistre à l’endroit, en JPEG, TIFF, BMP, GIF ou PNG.</translation>
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
        <translation>Le lot n’est pas encore terminé.</translation>
    </message>
    <message>
        <source>Results that are written stay.</source>
        <translation>Les résultats déjà écrits sont conservés.</translation>
    </message>
    <message>
        <source>Stop and Quit</source>
        <translation>Arrêter et quitter</translation>
    </message>
    <message>
        <source>Go On</source>
        <translation>Continuer</translation>
    </message>
</context>
<context>
    <name>velmara::BatchTable</name>
    <message>
        <source>Photo</source>
        <translation>Photo</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Taille</translation>
    </message>
    <message>
        <source>Noise</source>
        <translation>Bruit</translation>
    </message>
    <message>
        <source>Strength</source>
        <translation>Intensité</translation>
    </message>
    <message>
        <source>State</source>
        <translation>État</translation>
    </message>
    <message>
        <source>As all</source>
        <translation>Comme toutes</translation>
    </message>
</context>
<context>
    <name>velmara::BatchWindow</name>
    <message>
        <source>As the photo</source>
        <translation>Comme la photo</translation>
    </message>
    <message>
        <source>The photos&apos; folders</source>
        <translation>Dossiers des photos</translation>
    </message>
    <message>
        <source>Choose a Folder…</source>
        <translation>Choisir un dossier…</translation>
    </message>
    <message>
        <source>Keep both, with a number</source>
        <translation>Garder les deux, avec un numéro</translation>
    </message>
    <message>
        <source>Pass the photo over</source>
        <translation>Ignorer la photo</translation>
    </message>
    <message>
        <source>Replace it</source>
        <translation>Le remplacer</translation>
    </message>
    <message>
        <source>{name} is the photo&apos;s name, {number} its place in the list, {folder} its folder</source>
        <translation>{name} est le nom de la photo, {number} sa place dans la liste, {folder} son dossier</translation>
    </message>
    <message>
        <source>Add Photos</source>
        <translation>Ajouter des photos</translation>
    </message>
    <message>
        <source>Images</source>
        <translation>Images</translation>
    </message>
    <message>
        <source>Add Folder</source>
        <translation>Ajouter un dossier</translation>
    </message>
    <message>
        <source>Save the Results in</source>
        <translation>Enregistrer les résultats dans</translation>
    </message>
    <message>
        <source>For example %1</source>
        <translation>Par exemple %1</translation>
    </message>
    <message>
        <source>Looking for photos…</source>
        <translation>Recherche de photos…</translation>
    </message>
    <message numerus="yes">
        <source>%n photo(s)</source>
        <translation>
            <numerusform>%n photo</numerusform>
            <numerusform>%n photos</numerusform>
        </translation>
    </message>
    <message>
        <source>Denoise</source>
        <translation>Débruiter</translation>
    </message>
    <message numerus="yes">
        <source>Denoise %n Photo(s)</source>
        <translation>
            <numerusform>Débruiter %n photo</numerusform>
            <numerusform>Débruiter %n photos</numerusform>
        </translation>
    </message>
    <message>
        <source>Go On</source>
        <translation>Continuer</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Pause</translation>
    </message>
    <message numerus="yes">
        <source>%1 of %n photo(s)</source>
        <translation>
            <numerusform>%1 sur %n photo</numerusform>
            <numerusform>%1 sur %n photos</numerusform>
        </translation>
    </message>
    <message>
        <source>, paused</source>
        <translation>, en pause</translation>
    </message>
    <message>
        <source>The batch is not done yet.</source>
        <translation>Le lot n’est pas encore terminé.</translation>
    </message>
    <message numerus="yes">
        <source>%n photo(s) would be left as they are. Results that are written stay.</source>
        <translation>
            <numerusform>%n photo resterait telle quelle. Les résultats déjà écrits sont conservés.</numerusform>
            <numerusform>%n photos resteraient telles quelles. Les résultats déjà écrits sont conservés.</numerusform>
        </translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Arrêter</translation>
    </message>
</context>
<context>
    <name>velmara::DraggingView</name>
    <message>
        <source>Drop a photo here, or open one</source>
        <translation>Déposez ou ouvrez une photo</translation>
    </message>
</context>
<context>
    <name>velmara::EditingSession</name>
    <message>
        <source>Save Image</source>
        <translation>Enregistrer l’image</translation>
    </message>
    <message>
        <source>Auto</source>
        <translation>Auto</translation>
    </message>
    <message>
        <source>Manual</source>
        <translation>Manuel</translation>
    </message>
</context>
<context>
    <name>velmara::ExportOptionsView</name>
    <message>
        <source>JPEG is always written at %1, 4:4:4: visually lossless</source>
        <translation>JPEG est toujours écrit à %1, 4:4:4 : visuellement sans perte</translation>
    </message>
</context>
<context>
    <name>velmara::FeedbackWindowController</name>
    <message>
        <source>Feedback</source>
        <translation>Commentaires</translation>
    </message>
    <message>
        <source>Submit your feedback for Velmara</source>
        <translation>Envoyez vos commentaires sur Velmara</translation>
    </message>
    <message>
        <source>Your experience is highly appreciated.</source>
        <translation>Votre expérience nous est précieuse.</translation>
    </message>
    <message>
        <source>Email Address</source>
        <translation>Adresse e-mail</translation>
    </message>
    <message>
        <source>Please Select Feedback Type</source>
        <translation>Choisissez le type de commentaire</translation>
    </message>
    <message>
        <source>Share your experience</source>
        <translation>Partagez votre expérience</translation>
    </message>
    <message>
        <source>Include Velmara log in the feedback</source>
        <translation>Joindre le journal de Velmara</translation>
    </message>
    <message>
        <source>Send usage information for product improvment</source>
        <translation>Envoyer des données d’utilisation pour l’améliorer</translation>
    </message>
    <message>
        <source>Your feedback is being sent, please wait.</source>
        <translation>Envoi de vos commentaires, veuillez patienter.</translation>
    </message>
    <message>
        <source>*Invalid Email Address</source>
        <translation>*Adresse e-mail non valide</translation>
    </message>
    <message>
        <source>*Please Select Feedback Type</source>
        <translation>*Veuillez choisir le type</translation>
    </message>
    <message>
        <source>*Please share your experience</source>
        <translation>*Veuillez partager votre expérience</translation>
    </message>
    <message>
        <source>Save Report…</source>
        <translation>Enregistrer le rapport…</translation>
    </message>
    <message>
        <source>Submit</source>
        <translation>Envoyer</translation>
    </message>
    <message>
        <source>This build of Velmara has no feedback service to send to.
The report can be saved as a file, to be passed on by other means.</source>
        <translation>Cette version de Velmara n’a pas de service de commentaires.
Le rapport peut être enregistré dans un fichier, à transmettre autrement.</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>What is sent</source>
        <translation>Ce qui est envoyé</translation>
    </message>
    <message>
        <source>Hide the report</source>
        <translation>Masquer le rapport</translation>
    </message>
    <message>
        <source>Show the report</source>
        <translation>Afficher le rapport</translation>
    </message>
    <message>
        <source>Hide what is sent</source>
        <translation>Masquer les données</translation>
    </message>
    <message>
        <source>Show what is sent</source>
        <translation>Voir ce qui est envoyé</translation>
    </message>
    <message>
        <source>Internet Not Connected</source>
        <translation>Pas de connexion à Internet</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>The report could not be saved: %1</source>
        <translation>Le rapport n’a pas pu être enregistré : %1</translation>
    </message>
    <message>
        <source>Save Report</source>
        <translation>Enregistrer le rapport</translation>
    </message>
    <message>
        <source>General Feedback</source>
        <translation>Commentaire général</translation>
    </message>
    <message>
        <source>I feel good whenerver I have used it</source>
        <translation>C’est un plaisir chaque fois que je l’utilise</translation>
    </message>
    <message>
        <source>I want to report a problem</source>
        <translation>Je veux signaler un problème</translation>
    </message>
    <message>
        <source>Unable to understand the problem</source>
        <translation>Je ne comprends pas le problème</translation>
    </message>
</context>
<context>
    <name>velmara::MainScreenViewController</name>
    <message>
        <source>Open Image</source>
        <translation>Ouvrir une image</translation>
    </message>
    <message>
        <source>Images</source>
        <translation>Images</translation>
    </message>
    <message>
        <source>Can&apos;t Process</source>
        <translation>Traitement impossible</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Show %1</source>
        <translation>Afficher %1</translation>
    </message>
    <message>
        <source>The result could not be copied.</source>
        <translation>Le résultat n’a pas pu être copié.</translation>
    </message>
    <message>
        <source>Copied</source>
        <translation>Copié</translation>
    </message>
    <message>
        <source>Copying…</source>
        <translation>Copie…</translation>
    </message>
    <message>
        <source>Nothing was pasted.</source>
        <translation>Rien n’a été collé.</translation>
    </message>
    <message>
        <source>Thank you for providing us the feedback.</source>
        <translation>Merci pour vos commentaires.</translation>
    </message>
    <message>
        <source>Feedback</source>
        <translation>Commentaires</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Aide</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Enregistrer</translation>
    </message>
    <message>
        <source>Batch Process</source>
        <translation>Traitement par lot</translation>
    </message>
    <message>
        <source>Actual Size</source>
        <translation>Taille réelle</translation>
    </message>
    <message>
        <source>Double Size</source>
        <translation>Taille double</translation>
    </message>
    <message>
        <source>Fit To Screen</source>
        <translation>Ajuster à l’écran</translation>
    </message>
    <message>
        <source>Zoom In</source>
        <translation>Zoom avant</translation>
    </message>
    <message>
        <source>Zoom Out</source>
        <translation>Zoom arrière</translation>
    </message>
    <message>
        <source>Single Mode</source>
        <translation>Vue simple</translation>
    </message>
    <message>
        <source>Split Mode</source>
        <translation>Vue partagée</translation>
    </message>
    <message>
        <source>Dual Mode</source>
        <translation>Côte à côte</translation>
    </message>
    <message>
        <source>Removed Noise</source>
        <translation>Bruit retiré</translation>
    </message>
    <message>
        <source>Auto Mode</source>
        <translation>Mode automatique</translation>
    </message>
    <message>
        <source>Deep, For Strong Noise</source>
        <translation>Deep, pour un bruit fort</translation>
    </message>
    <message>
        <source>Select Denoise Level</source>
        <translation>Choisir le niveau de débruitage</translation>
    </message>
    <message>
        <source>Page Up, Page Down</source>
        <translation>Page préc., Page suiv.</translation>
    </message>
    <message>
        <source>Submit Feedback</source>
        <translation>Envoyer vos commentaires</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Fermer</translation>
    </message>
    <message>
        <source>Minimize</source>
        <translation>Réduire</translation>
    </message>
    <message>
        <source>Zoom</source>
        <translation>Agrandir</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Arrêter</translation>
    </message>
    <message>
        <source>Esc</source>
        <translation>Échap</translation>
    </message>
    <message>
        <source>Removed Noise × %1</source>
        <translation>Bruit retiré × %1</translation>
    </message>
    <message>
        <source>Before</source>
        <translation>Avant</translation>
    </message>
    <message>
        <source>After</source>
        <translation>Après</translation>
    </message>
    <message>
        <source>From the clipboard</source>
        <translation>Depuis le presse-papiers</translation>
    </message>
</context>
<context>
    <name>velmara::PageDots</name>
    <message>
        <source>Page %1 of %2</source>
        <translation>Page %1 sur %2</translation>
    </message>
</context>
<context>
    <name>velmara::TipsSheet</name>
    <message>
        <source>Done</source>
        <translation>Terminé</translation>
    </message>
    <message>
        <source>Next</source>
        <translation>Suivant</translation>
    </message>
</context>
</TS>
