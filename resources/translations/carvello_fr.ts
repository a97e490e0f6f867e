<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr" sourcelanguage="en">
<context>
    <name>CAboutDlg</name>
    <message>
        <source>About Carvello</source>
        <translation>À propos de Carvello</translation>
    </message>
    <message>
        <source>Icon of Carvello</source>
        <translation>Icône de Carvello</translation>
    </message>
    <message>
        <source>Carvello, Version 1.0</source>
        <translation>Carvello, version 1.0</translation>
    </message>
    <message>
        <source>Name and version</source>
        <translation>Nom et version</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Close this window</source>
        <translation>Fermer cette fenêtre</translation>
    </message>
    <message>
        <source>What the program is made of</source>
        <translation>De quoi le programme est fait</translation>
    </message>
    <message>
        <source>What becomes of the details</source>
        <translation>Ce que deviennent les détails</translation>
    </message>
    <message>
        <source>&amp;Copy Details for a Report</source>
        <translation>&amp;Copier les détails pour un rapport</translation>
    </message>
    <message>
        <source>Puts on the clipboard what a report about a fault needs: versions, system, processor, memory, and of the folders in use free space and speed, without what is in them</source>
        <translation>Met dans le presse-papiers ce qu’il faut à un rapport d’erreur : versions, système, processeur, mémoire et les dossiers que le programme utilise, sans leur contenu</translation>
    </message>
    <message>
        <source>Copy Details for a Report</source>
        <translation>Copier les détails pour un rapport</translation>
    </message>
</context>
<context>
    <name>CAddSequence</name>
    <message>
        <source>Add Sequence</source>
        <translation>Ajouter une série</translation>
    </message>
    <message>
        <source>&amp;Start freq:</source>
        <translation>Fréq. de &amp;début :</translation>
    </message>
    <message>
        <source>One end of the range of frequencies</source>
        <translation>Une extrémité de la plage de fréquences</translation>
    </message>
    <message>
        <source>Start frequency</source>
        <translation>Fréquence de début</translation>
    </message>
    <message>
        <source>&amp;End freq:</source>
        <translation>Fréq. de &amp;fin :</translation>
    </message>
    <message>
        <source>The other end of the range of frequencies</source>
        <translation>L&apos;autre extrémité de la plage de fréquences</translation>
    </message>
    <message>
        <source>End frequency</source>
        <translation>Fréquence de fin</translation>
    </message>
    <message>
        <source>S&amp;tep size:</source>
        <translation>&amp;Pas :</translation>
    </message>
    <message>
        <source>Distance from one frequency to the next</source>
        <translation>Écart d&apos;une fréquence à la suivante</translation>
    </message>
    <message>
        <source>Step size</source>
        <translation>Pas</translation>
    </message>
    <message>
        <source>Frequencies of the range that lie within the recorded band</source>
        <translation>Fréquences de la plage situées dans la bande enregistrée</translation>
    </message>
    <message>
        <source>Summary</source>
        <translation>Résumé</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Add one entry for every frequency of the range</source>
        <translation>Ajouter une entrée pour chaque fréquence de la plage</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>Close without adding anything</source>
        <translation>Fermer sans rien ajouter</translation>
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
        <translation>Entrée</translation>
    </message>
    <message>
        <source>The recording to cut from: any file of it</source>
        <translation>L&apos;enregistrement à découper : n&apos;importe lequel de ses fichiers</translation>
    </message>
    <message>
        <source>Input recording</source>
        <translation>Enregistrement d&apos;entrée</translation>
    </message>
    <message>
        <source>Show the file in the file manager</source>
        <translation>Montrer le fichier dans le gestionnaire de fichiers</translation>
    </message>
    <message>
        <source>Show the input file in the file manager</source>
        <translation>Montrer le fichier d&apos;entrée dans le gestionnaire de fichiers</translation>
    </message>
    <message>
        <source>∙∙∙</source>
        <translation>∙∙∙</translation>
    </message>
    <message>
        <source>Centre freq:</source>
        <translation>Fréq. centrale :</translation>
    </message>
    <message>
        <source>Centre frequency of the recording</source>
        <translation>Fréquence centrale de l&apos;enregistrement</translation>
    </message>
    <message>
        <source>Centre frequency</source>
        <translation>Fréquence centrale</translation>
    </message>
    <message>
        <source>-</source>
        <translation>-</translation>
    </message>
    <message>
        <source>Bandwidth:</source>
        <translation>Largeur de bande :</translation>
    </message>
    <message>
        <source>Bandwidth of the recording, which is its sample rate</source>
        <translation>Largeur de bande de l&apos;enregistrement, qui est sa fréquence d&apos;échantillonnage</translation>
    </message>
    <message>
        <source>Bandwidth</source>
        <translation>Largeur de bande</translation>
    </message>
    <message>
        <source>Sample size:</source>
        <translation>Échantillons :</translation>
    </message>
    <message>
        <source>Size of one I or Q sample</source>
        <translation>Taille d&apos;un échantillon I ou Q</translation>
    </message>
    <message>
        <source>Sample size</source>
        <translation>Taille des échantillons</translation>
    </message>
    <message>
        <source>Start:</source>
        <translation>Début :</translation>
    </message>
    <message>
        <source>When the recording begins</source>
        <translation>Quand l&apos;enregistrement commence</translation>
    </message>
    <message>
        <source>Start of the recording</source>
        <translation>Début de l&apos;enregistrement</translation>
    </message>
    <message>
        <source>Finish:</source>
        <translation>Fin :</translation>
    </message>
    <message>
        <source>When the recording ends</source>
        <translation>Quand l&apos;enregistrement se termine</translation>
    </message>
    <message>
        <source>Finish of the recording</source>
        <translation>Fin de l&apos;enregistrement</translation>
    </message>
    <message>
        <source>Total:</source>
        <translation>Durée :</translation>
    </message>
    <message>
        <source>Length of the recording: days, hours, minutes and seconds</source>
        <translation>Durée de l&apos;enregistrement : jours, heures, minutes et secondes</translation>
    </message>
    <message>
        <source>Length</source>
        <translation>Durée</translation>
    </message>
    <message>
        <source>Total files:</source>
        <translation>Fichiers :</translation>
    </message>
    <message>
        <source>Number of files that the recording is made of</source>
        <translation>Nombre de fichiers dont l&apos;enregistrement est fait</translation>
    </message>
    <message>
        <source>Number of files</source>
        <translation>Nombre de fichiers</translation>
    </message>
    <message>
        <source>Source:</source>
        <translation>Source :</translation>
    </message>
    <message>
        <source>The program that made the recording, or its format</source>
        <translation>Le programme qui a fait l&apos;enregistrement, ou son format</translation>
    </message>
    <message>
        <source>Source</source>
        <translation>Source</translation>
    </message>
    <message>
        <source>See what is on the air in the recording, and cut from there (F6)</source>
        <translation>Voir ce qui est sur l&apos;air dans l&apos;enregistrement, et y découper (F6)</translation>
    </message>
    <message>
        <source>Spectrum of the recording</source>
        <translation>Spectre de l&apos;enregistrement</translation>
    </message>
    <message>
        <source>S&amp;pectrum</source>
        <translation>S&amp;pectre</translation>
    </message>
    <message>
        <source>Show and enter all times in UTC instead of local time</source>
        <translation>Afficher et saisir toutes les heures en UTC au lieu de l&apos;heure locale</translation>
    </message>
    <message>
        <source>Times in UTC</source>
        <translation>Heures en UTC</translation>
    </message>
    <message>
        <source>&amp;UTC</source>
        <translation>&amp;UTC</translation>
    </message>
    <message>
        <source>Output</source>
        <translation>Sortie</translation>
    </message>
    <message>
        <source>The folder where the output files are created</source>
        <translation>Le dossier où les fichiers de sortie sont créés</translation>
    </message>
    <message>
        <source>Output folder</source>
        <translation>Dossier de sortie</translation>
    </message>
    <message>
        <source>Open the folder in the file manager</source>
        <translation>Ouvrir le dossier dans le gestionnaire de fichiers</translation>
    </message>
    <message>
        <source>Open the output folder in the file manager</source>
        <translation>Ouvrir le dossier de sortie dans le gestionnaire de fichiers</translation>
    </message>
    <message>
        <source>&amp;Centre freq:</source>
        <translation>Fréq. &amp;centrale :</translation>
    </message>
    <message>
        <source>Centre frequency of the output: MHz, kHz and Hz</source>
        <translation>Fréquence centrale de la sortie : MHz, kHz et Hz</translation>
    </message>
    <message>
        <source>Output centre frequency</source>
        <translation>Fréquence centrale de la sortie</translation>
    </message>
    <message>
        <source>Take the centre frequency of the recording</source>
        <translation>Prendre la fréquence centrale de l&apos;enregistrement</translation>
    </message>
    <message>
        <source>◀</source>
        <translation>◀</translation>
    </message>
    <message>
        <source>Band&amp;width:</source>
        <translation>Lar&amp;geur de bande :</translation>
    </message>
    <message>
        <source>Output bandwidth</source>
        <translation>Largeur de bande de la sortie</translation>
    </message>
    <message>
        <source>File si&amp;ze:</source>
        <translation>&amp;Taille de fichier :</translation>
    </message>
    <message>
        <source>Size at which the output is split into files, or one file of any size</source>
        <translation>Taille à laquelle la sortie est divisée en fichiers, ou un seul fichier de toute taille</translation>
    </message>
    <message>
        <source>Output file size</source>
        <translation>Taille des fichiers de sortie</translation>
    </message>
    <message>
        <source>16-bit integer samples (recommended)</source>
        <translation>Échantillons entiers de 16 bits (recommandé)</translation>
    </message>
    <message>
        <source>Output sample size 16 bit</source>
        <translation>Sortie en 16 bits</translation>
    </message>
    <message>
        <source>1&amp;6 bit</source>
        <translation>1&amp;6 bits</translation>
    </message>
    <message>
        <source>32-bit float samples</source>
        <translation>Échantillons flottants de 32 bits</translation>
    </message>
    <message>
        <source>Output sample size 32 bit</source>
        <translation>Sortie en 32 bits</translation>
    </message>
    <message>
        <source>&amp;32 bit</source>
        <translation>&amp;32 bits</translation>
    </message>
    <message>
        <source>The output begins where the recording begins</source>
        <translation>La sortie commence où l&apos;enregistrement commence</translation>
    </message>
    <message>
        <source>Start at beginning</source>
        <translation>Depuis le début</translation>
    </message>
    <message>
        <source>Start at &amp;beginning</source>
        <translation>Depuis le dé&amp;but</translation>
    </message>
    <message>
        <source>The output begins at this date and time</source>
        <translation>La sortie commence à cette date et cette heure</translation>
    </message>
    <message>
        <source>Start at date and time</source>
        <translation>Depuis une date et une heure</translation>
    </message>
    <message>
        <source>Date at which the output begins</source>
        <translation>Date à laquelle la sortie commence</translation>
    </message>
    <message>
        <source>Start date</source>
        <translation>Date de début</translation>
    </message>
    <message>
        <source>Time at which the output begins</source>
        <translation>Heure à laquelle la sortie commence</translation>
    </message>
    <message>
        <source>Start time</source>
        <translation>Heure de début</translation>
    </message>
    <message>
        <source>The output ends where the recording ends</source>
        <translation>La sortie se termine où l&apos;enregistrement se termine</translation>
    </message>
    <message>
        <source>Finish at end</source>
        <translation>Jusqu&apos;à la fin</translation>
    </message>
    <message>
        <source>Finish at e&amp;nd</source>
        <translation>Jusqu&apos;à la &amp;fin</translation>
    </message>
    <message>
        <source>The output ends after this time</source>
        <translation>La sortie se termine après cette durée</translation>
    </message>
    <message>
        <source>Finish after a duration</source>
        <translation>Fin après une durée</translation>
    </message>
    <message>
        <source>A&amp;fter:</source>
        <translation>Ap&amp;rès :</translation>
    </message>
    <message>
        <source>Hours</source>
        <translation>Heures</translation>
    </message>
    <message>
        <source>Duration, hours</source>
        <translation>Durée, heures</translation>
    </message>
    <message>
        <source>h</source>
        <translation>h</translation>
    </message>
    <message>
        <source>Minutes</source>
        <translation>Minutes</translation>
    </message>
    <message>
        <source>Duration, minutes</source>
        <translation>Durée, minutes</translation>
    </message>
    <message>
        <source>m</source>
        <translation>m</translation>
    </message>
    <message>
        <source>The output ends at this date and time</source>
        <translation>La sortie se termine à cette date et cette heure</translation>
    </message>
    <message>
        <source>Finish at date and time</source>
        <translation>Fin à une date et une heure</translation>
    </message>
    <message>
        <source>Date at which the output ends</source>
        <translation>Date à laquelle la sortie se termine</translation>
    </message>
    <message>
        <source>Finish date</source>
        <translation>Date de fin</translation>
    </message>
    <message>
        <source>Time at which the output ends</source>
        <translation>Heure à laquelle la sortie se termine</translation>
    </message>
    <message>
        <source>Finish time</source>
        <translation>Heure de fin</translation>
    </message>
    <message>
        <source>Add an entry with the choices above</source>
        <translation>Ajouter une entrée avec les choix ci-dessus</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>Ajouter</translation>
    </message>
    <message>
        <source>&amp;Add</source>
        <translation>A&amp;jouter</translation>
    </message>
    <message>
        <source>Add an entry for each step of a range of frequencies</source>
        <translation>Ajouter une entrée pour chaque pas d&apos;une plage de fréquences</translation>
    </message>
    <message>
        <source>Add Sequence</source>
        <translation>Ajouter une série</translation>
    </message>
    <message>
        <source>Add Se&amp;quence</source>
        <translation>Sé&amp;quence</translation>
    </message>
    <message>
        <source>How many entries one run processes, and how many there are</source>
        <translation>Combien d&apos;entrées un passage traite, et combien il y en a</translation>
    </message>
    <message>
        <source>Entries in the list</source>
        <translation>Entrées dans la liste</translation>
    </message>
    <message>
        <source>Process up to 1000 entries in one run, reading the input once for all of them</source>
        <translation>Traiter jusqu&apos;à 1000 entrées en un passage, en lisant l&apos;entrée une seule fois pour toutes</translation>
    </message>
    <message>
        <source>All in one pass</source>
        <translation>Tout en une passe</translation>
    </message>
    <message>
        <source>All in &amp;one pass</source>
        <translation>T&amp;out en une passe</translation>
    </message>
    <message>
        <source>Hint</source>
        <translation>Remarque</translation>
    </message>
    <message>
        <source>The outputs that the next run makes</source>
        <translation>Les sorties que fera le prochain passage</translation>
    </message>
    <message>
        <source>Entries</source>
        <translation>Entrées</translation>
    </message>
    <message>
        <source>Remove the selected entries</source>
        <translation>Retirer les entrées choisies</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Supprimer</translation>
    </message>
    <message>
        <source>&amp;Delete</source>
        <translation>&amp;Supprimer</translation>
    </message>
    <message>
        <source>Remove all entries</source>
        <translation>Retirer toutes les entrées</translation>
    </message>
    <message>
        <source>Reset</source>
        <translation>Vider</translation>
    </message>
    <message>
        <source>&amp;Reset</source>
        <translation>&amp;Vider</translation>
    </message>
    <message>
        <source>Make the outputs</source>
        <translation>Faire les sorties</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>Démarrer</translation>
    </message>
    <message>
        <source>▶ &amp;Start</source>
        <translation>▶ &amp;Démarrer</translation>
    </message>
    <message>
        <source>End the run; what was written stays valid</source>
        <translation>Terminer le passage ; ce qui est écrit reste valable</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Arrêter</translation>
    </message>
    <message>
        <source>◼ S&amp;top</source>
        <translation>◼ Arrêt&amp;er</translation>
    </message>
    <message>
        <source>How much of the input is done</source>
        <translation>Quelle part de l&apos;entrée est faite</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Progression</translation>
    </message>
    <message>
        <source>Progress in per cent</source>
        <translation>Progression en pour cent</translation>
    </message>
    <message>
        <source>99.99%</source>
        <translation>99.99%</translation>
    </message>
    <message>
        <source>How the last run ended</source>
        <translation>Comment le dernier passage s&apos;est terminé</translation>
    </message>
    <message>
        <source>How fast the input is read, and how long the rest of it takes</source>
        <translation>À quelle vitesse l&apos;entrée est lue, et combien de temps prend le reste</translation>
    </message>
    <message>
        <source>Speed and time left</source>
        <translation>Vitesse et temps restant</translation>
    </message>
    <message>
        <source>Log</source>
        <translation>Journal</translation>
    </message>
    <message>
        <source>What has happened</source>
        <translation>Ce qui s&apos;est passé</translation>
    </message>
    <message>
        <source>Open the log in the program for text files</source>
        <translation>Ouvrir le journal dans le programme des fichiers texte</translation>
    </message>
    <message>
        <source>View the log as text</source>
        <translation>Afficher le journal en texte</translation>
    </message>
    <message>
        <source>&amp;View as text</source>
        <translation>Afficher en te&amp;xte</translation>
    </message>
    <message>
        <source>Tell how Carvello is used</source>
        <translation>Dire comment utiliser Carvello</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Aide</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>A&amp;ide</translation>
    </message>
    <message>
        <source>Help text</source>
        <translation>Texte d&apos;aide</translation>
    </message>
    <message>
        <source>Open and save the list as a job file, undo and redo</source>
        <translation>Ouvrir et enregistrer la liste en fichier de tâche, annuler et rétablir</translation>
    </message>
    <message>
        <source>Job</source>
        <translation>Tâche</translation>
    </message>
    <message>
        <source>&amp;Job</source>
        <translation>Tâc&amp;he</translation>
    </message>
    <message>
        <source>Run all batches without a question: existing files are left out, and failures are told at the end</source>
        <translation>Faire tous les lots sans question : les fichiers existants sont laissés, et les échecs sont dits à la fin</translation>
    </message>
    <message>
        <source>Unattended</source>
        <translation>Sans surveillance</translation>
    </message>
    <message>
        <source>Unatt&amp;ended</source>
        <translation>Sa&amp;ns surveillance</translation>
    </message>
    <message>
        <source>Bandwidth of the output, which is its sample rate: chosen, or typed as 12.5k, 10 kHz or 12500 Hz</source>
        <translation>Largeur de bande de la sortie, qui est sa fréquence d&apos;échantillonnage : choisie, ou tapée comme 12.5k, 10 kHz ou 12500 Hz</translation>
    </message>
    <message>
        <source>Put the choices above in the place of the entry that was double-clicked (or Enter, F2)</source>
        <translation>Mettre les choix ci-dessus à la place de l&apos;entrée qui a été double-cliquée (ou Entrée, F2)</translation>
    </message>
    <message>
        <source>Replace the edited entry</source>
        <translation>Remplacer l&apos;entrée modifiée</translation>
    </message>
    <message>
        <source>Rep&amp;lace</source>
        <translation>Rempl&amp;acer</translation>
    </message>
    <message>
        <source>Take the frequency that is meant</source>
        <translation>Prendre la fréquence voulue</translation>
    </message>
</context>
<context>
    <name>CEntryTable</name>
    <message>
        <source>Folder</source>
        <translation>Dossier</translation>
    </message>
    <message>
        <source>Bits</source>
        <translation>Bits</translation>
    </message>
    <message>
        <source>File size</source>
        <translation>Taille de fichier</translation>
    </message>
    <message>
        <source>Expected size</source>
        <translation>Taille attendue</translation>
    </message>
    <message>
        <source>Centre</source>
        <translation>Centre</translation>
    </message>
    <message>
        <source>Bw</source>
        <translation>Lb</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>Début</translation>
    </message>
    <message>
        <source>Finish</source>
        <translation>Fin</translation>
    </message>
    <message>
        <source>Filename</source>
        <translation>Nom du fichier</translation>
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
%2 à %3
Nom du fichier : %4
Dossier : %5
Échantillons : %6 bits
Taille de fichier : %7
Taille attendue : %8</translation>
    </message>
</context>
<context>
    <name>CSpectrumWindow</name>
    <message>
        <source>Spectrum</source>
        <translation>Spectre</translation>
    </message>
    <message>
        <source>Frequency, time and level under the cursor</source>
        <translation>Fréquence, heure et niveau sous le curseur</translation>
    </message>
    <message>
        <source>Under the cursor</source>
        <translation>Sous le curseur</translation>
    </message>
    <message>
        <source>Length of the transform and width of one of its bins, and what is in view</source>
        <translation>Longueur de la transformée et largeur d&apos;un de ses canaux, et ce qui est en vue</translation>
    </message>
    <message>
        <source>Transform and view</source>
        <translation>Transformée et vue</translation>
    </message>
    <message>
        <source>How much of the recording has been looked at</source>
        <translation>Quelle part de l&apos;enregistrement a été regardée</translation>
    </message>
    <message>
        <source>Overview</source>
        <translation>Aperçu</translation>
    </message>
    <message>
        <source>Progress of the overview</source>
        <translation>Progression de l&apos;aperçu</translation>
    </message>
    <message>
        <source>View</source>
        <translation>Vue</translation>
    </message>
    <message>
        <source>Sho&amp;w:</source>
        <translation>A&amp;fficher :</translation>
    </message>
    <message>
        <source>Average brings out what is weak and steady, peak what is short</source>
        <translation>La moyenne fait ressortir ce qui est faible et stable, la crête ce qui est bref</translation>
    </message>
    <message>
        <source>Waterfall shows</source>
        <translation>La cascade montre</translation>
    </message>
    <message>
        <source>&amp;Transform:</source>
        <translation>&amp;Transformée :</translation>
    </message>
    <message>
        <source>Points of a transform: more tell frequencies better apart, fewer tell times</source>
        <translation>Points d&apos;une transformée : plus ils sont nombreux, mieux ils séparent les fréquences, moins les temps</translation>
    </message>
    <message>
        <source>Length of the transform</source>
        <translation>Longueur de la transformée</translation>
    </message>
    <message>
        <source>W&amp;indow:</source>
        <translation>Fe&amp;nêtre :</translation>
    </message>
    <message>
        <source>Hann for most; Blackman-Harris beside strong stations; flat top for exact levels</source>
        <translation>Hann pour presque tout ; Blackman-Harris près de fortes stations ; sommet plat pour des niveaux exacts</translation>
    </message>
    <message>
        <source>Window of the transform</source>
        <translation>Fenêtre de la transformée</translation>
    </message>
    <message>
        <source>Levels</source>
        <translation>Niveaux</translation>
    </message>
    <message>
        <source>&amp;Palette:</source>
        <translation>&amp;Palette :</translation>
    </message>
    <message>
        <source>Colours from weak to strong</source>
        <translation>Couleurs de faible à fort</translation>
    </message>
    <message>
        <source>Palette</source>
        <translation>Palette</translation>
    </message>
    <message>
        <source>Levels from the noise floor of what is in view</source>
        <translation>Niveaux d&apos;après le bruit de ce qui est en vue</translation>
    </message>
    <message>
        <source>Automatic levels</source>
        <translation>Niveaux automatiques</translation>
    </message>
    <message>
        <source>A&amp;utomatic</source>
        <translation>A&amp;utomatique</translation>
    </message>
    <message>
        <source>&amp;High:</source>
        <translation>&amp;Haut :</translation>
    </message>
    <message>
        <source>Level of the brightest colour</source>
        <translation>Niveau de la couleur la plus claire</translation>
    </message>
    <message>
        <source>Highest level</source>
        <translation>Niveau le plus haut</translation>
    </message>
    <message>
        <source> dBFS</source>
        <translation> dBFS</translation>
    </message>
    <message>
        <source>&amp;Low:</source>
        <translation>&amp;Bas :</translation>
    </message>
    <message>
        <source>Level of the darkest colour</source>
        <translation>Niveau de la couleur la plus sombre</translation>
    </message>
    <message>
        <source>Lowest level</source>
        <translation>Niveau le plus bas</translation>
    </message>
    <message>
        <source>Cut</source>
        <translation>Découpe</translation>
    </message>
    <message>
        <source>S&amp;nap to:</source>
        <translation>&amp;Grille :</translation>
    </message>
    <message>
        <source>The middle of what is dragged goes to a multiple of this</source>
        <translation>Le milieu de ce qui est tracé va à un multiple de ceci</translation>
    </message>
    <message>
        <source>Raster of frequencies</source>
        <translation>Grille de fréquences</translation>
    </message>
    <message>
        <source>The middle of what is dragged goes to the strongest carrier in it</source>
        <translation>Le milieu de ce qui est tracé va à la porteuse la plus forte qui s&apos;y trouve</translation>
    </message>
    <message>
        <source>Snap to the carrier</source>
        <translation>Caler sur la porteuse</translation>
    </message>
    <message>
        <source>Snap to &amp;carrier</source>
        <translation>Caler sur la p&amp;orteuse</translation>
    </message>
    <message>
        <source>What Add puts on the list</source>
        <translation>Ce qu&apos;Ajouter met dans la liste</translation>
    </message>
    <message>
        <source>What is to be cut</source>
        <translation>Ce qui sera découpé</translation>
    </message>
    <message>
        <source>Put what is chosen on the list of entries (Enter)</source>
        <translation>Mettre ce qui est choisi dans la liste des entrées (Entrée)</translation>
    </message>
    <message>
        <source>Add the cut</source>
        <translation>Ajouter la découpe</translation>
    </message>
    <message>
        <source>A&amp;dd</source>
        <translation>&amp;Ajouter</translation>
    </message>
    <message>
        <source>Forget what is chosen (Escape)</source>
        <translation>Oublier ce qui est choisi (Échap)</translation>
    </message>
    <message>
        <source>Drop the cut</source>
        <translation>Abandonner la découpe</translation>
    </message>
    <message>
        <source>D&amp;rop</source>
        <translation>Abandonne&amp;r</translation>
    </message>
    <message>
        <source>Signals</source>
        <translation>Signaux</translation>
    </message>
    <message>
        <source>Look for what stands out of the noise, in the frequencies and times in view</source>
        <translation>Chercher ce qui dépasse du bruit, dans les fréquences et les temps en vue</translation>
    </message>
    <message>
        <source>Find signals</source>
        <translation>Chercher des signaux</translation>
    </message>
    <message>
        <source>&amp;Find signals</source>
        <translation>&amp;Chercher des signaux</translation>
    </message>
    <message>
        <source>So far above the noise a signal stands at least</source>
        <translation>Un signal dépasse le bruit d&apos;au moins autant</translation>
    </message>
    <message>
        <source>Decibels above the noise</source>
        <translation>Décibels au-dessus du bruit</translation>
    </message>
    <message>
        <source> dB</source>
        <translation> dB</translation>
    </message>
    <message>
        <source>Signals found: frequency, bandwidth, and decibels above the noise</source>
        <translation>Signaux trouvés : fréquence, largeur de bande et décibels au-dessus du bruit</translation>
    </message>
    <message>
        <source>Signals found</source>
        <translation>Signaux trouvés</translation>
    </message>
    <message>
        <source>How the search goes</source>
        <translation>Où en est la recherche</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Recherche</translation>
    </message>
    <message>
        <source>Put the selected signals on the list of entries, each in the next bandwidth offered</source>
        <translation>Mettre les signaux choisis dans la liste des entrées, chacun dans la largeur de bande proposée la plus proche</translation>
    </message>
    <message>
        <source>Add the selected signals</source>
        <translation>Ajouter les signaux choisis</translation>
    </message>
    <message>
        <source>Tak&amp;e</source>
        <translation>Pr&amp;endre</translation>
    </message>
    <message>
        <source>Put all signals on the list of entries</source>
        <translation>Mettre tous les signaux dans la liste des entrées</translation>
    </message>
    <message>
        <source>Add all signals</source>
        <translation>Ajouter tous les signaux</translation>
    </message>
    <message>
        <source>T&amp;ake all</source>
        <translation>Tout pren&amp;dre</translation>
    </message>
    <message>
        <source>Save what is seen, with its axes, as a PNG file (Ctrl+S)</source>
        <translation>Enregistrer ce qui est vu, avec ses axes, en fichier PNG (Ctrl+S)</translation>
    </message>
    <message>
        <source>Save the picture</source>
        <translation>Enregistrer l&apos;image</translation>
    </message>
    <message>
        <source>&amp;Save…</source>
        <translation>Enregi&amp;strer…</translation>
    </message>
    <message>
        <source>Copy what is seen, with its axes (Ctrl+C)</source>
        <translation>Copier ce qui est vu, avec ses axes (Ctrl+C)</translation>
    </message>
    <message>
        <source>Copy the picture</source>
        <translation>Copier l&apos;image</translation>
    </message>
    <message>
        <source>Cop&amp;y</source>
        <translation>Cop&amp;ier</translation>
    </message>
    <message>
        <source>Keep overviews of recordings in the folder for caches, at most 1 GB, so that they are there at once the next time</source>
        <translation>Garder les aperçus des enregistrements dans le dossier des caches, au plus 1 Go, pour qu&apos;ils soient là aussitôt la fois suivante</translation>
    </message>
    <message>
        <source>Keep overviews</source>
        <translation>Garder les aperçus</translation>
    </message>
    <message>
        <source>&amp;Keep overviews</source>
        <translation>Garder &amp;les aperçus</translation>
    </message>
</context>
<context>
    <name>JobQuestions</name>
    <message>
        <source>Job files (*.json)</source>
        <translation>Fichiers de tâche (*.json)</translation>
    </message>
    <message>
        <source>All files (*)</source>
        <translation>Tous les fichiers (*)</translation>
    </message>
    <message>
        <source>Open Job</source>
        <translation>Ouvrir la tâche</translation>
    </message>
    <message>
        <source>Save Job</source>
        <translation>Enregistrer la tâche</translation>
    </message>
    <message>
        <source>The job was made for another recording:
%1</source>
        <translation>La tâche a été faite pour un autre enregistrement :
%1</translation>
    </message>
    <message>
        <source>&amp;Open That Recording</source>
        <translation>&amp;Ouvrir cet enregistrement-là</translation>
    </message>
    <message>
        <source>&amp;Apply to This One</source>
        <translation>&amp;Appliquer à celui-ci</translation>
    </message>
    <message>
        <source>Applied to the recording that is open, its times can be shifted, to lie as long after the start as they did there, or stay the same dates and times.</source>
        <translation>Appliquées à l&apos;enregistrement ouvert, ses heures peuvent être décalées, pour se trouver aussi longtemps après le début que là-bas, ou rester les mêmes dates et heures.</translation>
    </message>
    <message>
        <source>Apply, &amp;Shifted</source>
        <translation>Appliquer, &amp;décalé</translation>
    </message>
    <message>
        <source>Apply, Same &amp;Times</source>
        <translation>Appliquer, mêmes &amp;heures</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Fermer</translation>
    </message>
    <message>
        <source>&amp;Replace</source>
        <translation>&amp;Remplacer</translation>
    </message>
    <message>
        <source>Entries that were neither run nor saved: %1</source>
        <translation>Entrées ni passées ni enregistrées : %1</translation>
    </message>
    <message>
        <source>The list is kept, and offered when this recording is opened the next time.</source>
        <translation>La liste est gardée, et proposée quand cet enregistrement sera ouvert la prochaine fois.</translation>
    </message>
    <message>
        <source>&amp;Save…</source>
        <translation>Enregi&amp;strer…</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>&amp;Fermer</translation>
    </message>
</context>
<context>
    <name>ListSums</name>
    <message>
        <source>Entries: %1, hours: %2, expected: %3</source>
        <translation>Entrées : %1, heures : %2, attendu : %3</translation>
    </message>
    <message>
        <source>Entries: %1, hours: %2, expected: %3, free: not known</source>
        <translation>Entrées : %1, heures : %2, attendu : %3, libre : inconnu</translation>
    </message>
    <message>
        <source>Does not fit: entries: %1, hours: %2, expected: %3, free: %4 in %5</source>
        <translation>Trop grand : entrées : %1, heures : %2, attendu : %3, libre : %4 dans %5</translation>
    </message>
    <message>
        <source>Entries: %1, hours: %2, expected: %3, free: %4</source>
        <translation>Entrées : %1, heures : %2, attendu : %3, libre : %4</translation>
    </message>
</context>
<context>
    <name>QFileDialog</name>
    <message>
        <source>Save Picture</source>
        <translation>Enregistrer l&apos;image</translation>
    </message>
    <message>
        <source>PNG pictures (*.png)</source>
        <translation>Images PNG (*.png)</translation>
    </message>
</context>
<context>
    <name>SpokenText</name>
    <message>
        <source>%1: %2</source>
        <translation>%1 : %2</translation>
    </message>
</context>
<context>
    <name>Texts</name>
    <message>
        <source>Start</source>
        <translation>Démarrer</translation>
    </message>
    <message>
        <source>Start Time</source>
        <translation>Début</translation>
    </message>
    <message>
        <source>End</source>
        <translation>Fin</translation>
    </message>
    <message>
        <source>End Time</source>
        <translation>Fin</translation>
    </message>
    <message>
        <source>Continue</source>
        <translation>Continuer</translation>
    </message>
    <message>
        <source>Open File</source>
        <translation>Ouvrir le fichier</translation>
    </message>
    <message>
        <source>Open Folder</source>
        <translation>Ouvrir le dossier</translation>
    </message>
    <message>
        <source>Save Picture</source>
        <translation>Enregistrer l&apos;image</translation>
    </message>
    <message>
        <source>The start time is out of range. Reset the start time?</source>
        <translation>L&apos;heure de début est hors de l&apos;enregistrement. La rétablir ?</translation>
    </message>
    <message>
        <source>The end time is out of range. Reset the end time?</source>
        <translation>L&apos;heure de fin est hors de l&apos;enregistrement. La rétablir ?</translation>
    </message>
    <message>
        <source>End duration cannot be zero.</source>
        <translation>La durée ne peut pas être nulle.</translation>
    </message>
    <message>
        <source>The start time + end duration is past the end of file, change the duration.</source>
        <translation>Le début et la durée dépassent la fin du fichier ; changez la durée.</translation>
    </message>
    <message>
        <source>The end time is before the start time.</source>
        <translation>L&apos;heure de fin est avant l&apos;heure de début.</translation>
    </message>
    <message>
        <source>The maximum entries which can be processed is %1, you have added %2.

Continue?</source>
        <translation>On peut traiter au plus %1 entrées, vous en avez ajouté %2.

Continuer ?</translation>
    </message>
    <message>
        <source>The output file already exists, overwrite it?</source>
        <translation>Le fichier de sortie existe déjà. L&apos;écraser ?</translation>
    </message>
    <message>
        <source>%1 of %2 file(s) already exist, do you want to overwrite them?</source>
        <translation>%1 fichier(s) sur %2 existent déjà. Voulez-vous les écraser ?</translation>
    </message>
    <message>
        <source>A thread could not be started</source>
        <translation>Un fil d&apos;exécution n&apos;a pas pu démarrer</translation>
    </message>
    <message>
        <source>All output files exist, processing not started.</source>
        <translation>Tous les fichiers de sortie existent, rien n&apos;a été commencé.</translation>
    </message>
    <message>
        <source>%1 of %2 entries have been processed. Remove from list and continue?</source>
        <translation>%1 entrées sur %2 ont été traitées. Les retirer de la liste et continuer ?</translation>
    </message>
    <message>
        <source>The input holds no files</source>
        <translation>L&apos;entrée ne contient pas de fichiers</translation>
    </message>
    <message>
        <source>cannot be read</source>
        <translation>ne peut pas être lu</translation>
    </message>
    <message>
        <source>%1 would replace the input file %2</source>
        <translation>%1 remplacerait le fichier d&apos;entrée %2</translation>
    </message>
    <message>
        <source>Up to %1 files would be open at a time, and the system allows this program %2: raise that limit, or cut fewer entries at a time</source>
        <translation>Jusqu&apos;à %1 fichiers seraient ouverts à la fois, et le système en permet %2 à ce programme : relevez cette limite, ou découpez moins d&apos;entrées à la fois</translation>
    </message>
    <message>
        <source>The downconverter library Vantrel is missing or incomplete: %1</source>
        <translation>La bibliothèque de conversion Vantrel manque ou est incomplète : %1</translation>
    </message>
    <message>
        <source>failed: %1</source>
        <translation>échec : %1</translation>
    </message>
    <message>
        <source>Stopped: %1 of %2 outputs complete</source>
        <translation>Arrêté : %1 sorties complètes sur %2</translation>
    </message>
    <message>
        <source>%1 of %2 outputs written</source>
        <translation>%1 sorties écrites sur %2</translation>
    </message>
    <message>
        <source>%1 of %2 outputs failed:</source>
        <translation>%1 sorties sur %2 ont échoué :</translation>
    </message>
    <message>
        <source>%1 failed</source>
        <translation>%1 en échec</translation>
    </message>
    <message>
        <source>%1 existed</source>
        <translation>%1 existaient</translation>
    </message>
    <message>
        <source>%1 not begun</source>
        <translation>%1 non commencées</translation>
    </message>
    <message>
        <source>and %1 more, which the list and the log name.</source>
        <translation>et %1 de plus, que la liste et le journal nomment.</translation>
    </message>
    <message>
        <source>waiting</source>
        <translation>en attente</translation>
    </message>
    <message>
        <source>done</source>
        <translation>fait</translation>
    </message>
    <message>
        <source>stopped</source>
        <translation>arrêté</translation>
    </message>
    <message>
        <source>exists</source>
        <translation>existe</translation>
    </message>
    <message>
        <source>not finished</source>
        <translation>non terminé</translation>
    </message>
    <message>
        <source>Error writing %1 bytes - %2</source>
        <translation>Erreur d&apos;écriture de %1 octets - %2</translation>
    </message>
    <message>
        <source>%1 MB/s, %2 left</source>
        <translation>%1 Mo/s, reste %2</translation>
    </message>
    <message>
        <source>%1; see the log</source>
        <translation>%1 ; voir le journal</translation>
    </message>
    <message>
        <source>the bandwidth %1 is out of range.</source>
        <translation>la largeur de bande %1 est hors limites.</translation>
    </message>
    <message>
        <source>the end time is the start time: it runs to the end.</source>
        <translation>l&apos;heure de fin est celle du début : va jusqu&apos;à la fin.</translation>
    </message>
    <message>
        <source>the start time lies behind the last sample</source>
        <translation>le début se trouve après le dernier échantillon</translation>
    </message>
    <message>
        <source>wholly outside %1 to %2</source>
        <translation>entièrement hors de %1 à %2</translation>
    </message>
    <message>
        <source>partly outside %1 to %2</source>
        <translation>en partie hors de %1 à %2</translation>
    </message>
    <message>
        <source>in the list already; not taken over: %1</source>
        <translation>déjà dans la liste ; non repris : %1</translation>
    </message>
    <message>
        <source>in the list already</source>
        <translation>déjà dans la liste</translation>
    </message>
    <message>
        <source>folder</source>
        <translation>dossier</translation>
    </message>
    <message>
        <source>sample size</source>
        <translation>taille des échantillons</translation>
    </message>
    <message>
        <source>file size</source>
        <translation>taille de fichier</translation>
    </message>
    <message>
        <source>One file (RF64)</source>
        <translation>Un fichier (RF64)</translation>
    </message>
    <message>
        <source>Maximum entries: %1, current: %2</source>
        <translation>Entrées maximum : %1, actuelles : %2</translation>
    </message>
    <message>
        <source>Maximum entries: %1</source>
        <translation>Entrées maximum : %1</translation>
    </message>
    <message>
        <source>%1 to %2 in steps of %3. Total entries %4.</source>
        <translation>%1 à %2 par pas de %3. Entrées : %4.</translation>
    </message>
    <message>
        <source>Follows the zoom</source>
        <translation>Suit le zoom</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>Aucune</translation>
    </message>
    <message>
        <source>Average</source>
        <translation>Moyenne</translation>
    </message>
    <message>
        <source>Peak</source>
        <translation>Crête</translation>
    </message>
    <message>
        <source>Flat top</source>
        <translation>Sommet plat</translation>
    </message>
    <message>
        <source>Grey</source>
        <translation>Gris</translation>
    </message>
    <message>
        <source>%1, whole recording</source>
        <translation>%1, tout l&apos;enregistrement</translation>
    </message>
    <message>
        <source>%1, level not known yet</source>
        <translation>%1, niveau pas encore connu</translation>
    </message>
    <message>
        <source>Not enough memory</source>
        <translation>Pas assez de mémoire</translation>
    </message>
    <message>
        <source>The run could not go on: %1</source>
        <translation>Le passage n&apos;a pas pu continuer : %1</translation>
    </message>
    <message>
        <source>Outputs not begun: %1</source>
        <translation>Sorties non commencées : %1</translation>
    </message>
    <message>
        <source>Not enough memory for the search</source>
        <translation>Pas assez de mémoire pour la recherche</translation>
    </message>
    <message>
        <source>The system gives no thread for the search</source>
        <translation>Le système ne donne pas de fil d&apos;exécution pour la recherche</translation>
    </message>
    <message>
        <source>no samples could be found in it</source>
        <translation>aucun échantillon n&apos;y a été trouvé</translation>
    </message>
    <message>
        <source>cannot be opened - %1</source>
        <translation>ne peut pas être ouvert - %1</translation>
    </message>
    <message>
        <source>cannot be opened: %1</source>
        <translation>ne peut pas être ouvert : %1</translation>
    </message>
    <message>
        <source>cannot be read - %1</source>
        <translation>ne peut pas être lu - %1</translation>
    </message>
    <message>
        <source>is no ordinary file</source>
        <translation>n&apos;est pas un fichier ordinaire</translation>
    </message>
    <message>
        <source>frame %1 cannot be reached</source>
        <translation>l&apos;échantillon %1 ne peut pas être atteint</translation>
    </message>
    <message>
        <source>reading stopped at byte %1 of its %2 sample bytes - %3</source>
        <translation>lecture arrêtée à l&apos;octet %1 de ses %2 octets d&apos;échantillons - %3</translation>
    </message>
    <message>
        <source>the file ends too early</source>
        <translation>le fichier finit trop tôt</translation>
    </message>
    <message>
        <source>its status cannot be had any more</source>
        <translation>son état n&apos;est plus accessible</translation>
    </message>
    <message>
        <source>it has changed since it was analysed: %1 bytes instead of %2</source>
        <translation>modifié depuis l&apos;analyse : %1 octets au lieu de %2</translation>
    </message>
    <message>
        <source>it has changed since it was analysed: it was written to</source>
        <translation>modifié depuis l&apos;analyse : on y a écrit</translation>
    </message>
    <message>
        <source>it has changed since it was analysed: another file has its name</source>
        <translation>modifié depuis l&apos;analyse : un autre fichier porte son nom</translation>
    </message>
    <message>
        <source>its samples are %1, those of the recording %2</source>
        <translation>ses échantillons sont en %1, ceux de l&apos;enregistrement en %2</translation>
    </message>
    <message>
        <source>it holds %1 sample bytes, the recording has %2 there</source>
        <translation>contient %1 octets d&apos;échantillons, l&apos;enregistrement en a %2 à cet endroit</translation>
    </message>
    <message>
        <source>%1 samples in %2 channels cannot be read; accepted are 2 channels of 8, 16, 24 or 32-bit PCM or 32 or 64-bit float</source>
        <translation>les échantillons %1 en %2 canaux ne peuvent pas être lus ; sont acceptés 2 canaux de 8, 16, 24 ou 32 bits PCM ou 32 ou 64 bits flottants</translation>
    </message>
    <message>
        <source>Not a valid WAVE file</source>
        <translation>Pas un fichier WAVE valide</translation>
    </message>
    <message>
        <source>Not a valid WAVE RF64 file</source>
        <translation>Pas un fichier WAVE RF64 valide</translation>
    </message>
    <message>
        <source>[ERROR] More than %1 chunks and none of them holds samples</source>
        <translation>[ERREUR] Plus de %1 blocs, et aucun ne contient d&apos;échantillons</translation>
    </message>
    <message>
        <source>[ERROR] Failed to read header!</source>
        <translation>[ERREUR] L&apos;en-tête ne peut pas être lu !</translation>
    </message>
    <message>
        <source>[ERROR] Invalid data chunk!...Exiting</source>
        <translation>[ERREUR] Bloc de données non valide ! Abandon</translation>
    </message>
    <message>
        <source>[ERROR] Failed to read ds64 chunk from the file</source>
        <translation>[ERREUR] Le bloc ds64 ne peut pas être lu</translation>
    </message>
    <message>
        <source>[ERROR] Failed to read next chunk from the file</source>
        <translation>[ERREUR] Le bloc suivant ne peut pas être lu</translation>
    </message>
    <message>
        <source>[ERROR] No format before the data chunk</source>
        <translation>[ERREUR] Pas de format avant le bloc de données</translation>
    </message>
    <message>
        <source>[ERROR] Failed to skip the chunk</source>
        <translation>[ERREUR] Le bloc ne peut pas être sauté</translation>
    </message>
    <message>
        <source>[ERROR] Failed to get the file&apos;s length</source>
        <translation>[ERREUR] La longueur du fichier n&apos;est pas accessible</translation>
    </message>
    <message>
        <source>[ERROR] Invalid data bytes size!</source>
        <translation>[ERREUR] Nombre d&apos;octets de données non valide !</translation>
    </message>
    <message>
        <source>The input ends before the first entry begins</source>
        <translation>L&apos;entrée finit avant le début de la première sortie</translation>
    </message>
    <message>
        <source>the recording ends earlier than it did</source>
        <translation>l&apos;enregistrement finit plus tôt qu&apos;avant</translation>
    </message>
    <message>
        <source>no answer</source>
        <translation>pas de réponse</translation>
    </message>
    <message>
        <source>a bandwidth of 0 Hz cannot be cut</source>
        <translation>une largeur de bande de 0 Hz ne peut pas être extraite</translation>
    </message>
    <message>
        <source>a bandwidth of %1 Hz is wider than the input, which has %2 Hz</source>
        <translation>une largeur de bande de %1 Hz dépasse celle de l&apos;entrée, de %2 Hz</translation>
    </message>
    <message>
        <source>samples of %1 bits cannot be written</source>
        <translation>des échantillons de %1 bits ne peuvent pas être écrits</translation>
    </message>
    <message>
        <source>no samples of the input lie between its start and its end</source>
        <translation>aucun échantillon de l&apos;entrée ne se trouve entre son début et sa fin</translation>
    </message>
    <message>
        <source>the input ended: frames of its stretch that were read: %1, due: %2</source>
        <translation>l&apos;entrée a fini : échantillons lus de son passage : %1, attendus : %2</translation>
    </message>
    <message>
        <source>frames of the input that were read for it: %1, due: %2</source>
        <translation>échantillons de l&apos;entrée lus pour elle : %1, attendus : %2</translation>
    </message>
    <message>
        <source>samples written: %1, due: %2</source>
        <translation>échantillons écrits : %1, attendus : %2</translation>
    </message>
    <message>
        <source>no file was written</source>
        <translation>aucun fichier n&apos;a été écrit</translation>
    </message>
    <message>
        <source>Unknown error</source>
        <translation>Erreur inconnue</translation>
    </message>
    <message>
        <source>Unknown error %1</source>
        <translation>Erreur inconnue %1</translation>
    </message>
    <message>
        <source>The downconverter library gave %1 samples where %2 were due, of which it may keep %3 back</source>
        <translation>La bibliothèque de conversion a donné %1 échantillons au lieu de %2, dont elle peut en retenir %3</translation>
    </message>
    <message>
        <source>The downconverter library has no memory for it</source>
        <translation>La bibliothèque de conversion n&apos;a pas de mémoire pour cela</translation>
    </message>
    <message>
        <source>The downconverter library has no memory, or no way, for a ratio of %1 to %2</source>
        <translation>La bibliothèque de conversion n&apos;a pas de mémoire, ou pas de moyen, pour un rapport de %1 à %2</translation>
    </message>
    <message>
        <source>The downconverter library does not bring %1 to %2 samples per second</source>
        <translation>La bibliothèque de conversion ne ramène pas %1 à %2 échantillons par seconde</translation>
    </message>
    <message>
        <source>The shared spectrum does not bring %1 to %2 samples per second</source>
        <translation>Le spectre commun ne ramène pas %1 à %2 échantillons par seconde</translation>
    </message>
    <message>
        <source>%1 exists and is no recording that could be read</source>
        <translation>%1 existe et n&apos;est pas un enregistrement lisible</translation>
    </message>
    <message>
        <source>%1 exists and is another recording, of another start or frequency</source>
        <translation>%1 existe et est un autre enregistrement, d&apos;un autre début ou d&apos;une autre fréquence</translation>
    </message>
    <message>
        <source>%1 exists and is another recording, %2 bits at %3 Hz</source>
        <translation>%1 existe et est un autre enregistrement, %2 bits à %3 Hz</translation>
    </message>
    <message>
        <source>%1 is not finished: %2 of %3 frames</source>
        <translation>%1 n&apos;est pas terminé : %2 échantillons sur %3</translation>
    </message>
    <message>
        <source>%1 is not finished</source>
        <translation>%1 n&apos;est pas terminé</translation>
    </message>
    <message>
        <source>File not open</source>
        <translation>Fichier non ouvert</translation>
    </message>
    <message>
        <source>Error writing the end of the file - %1</source>
        <translation>Erreur d&apos;écriture de la fin du fichier - %1</translation>
    </message>
    <message>
        <source>Error writing the first file - %1</source>
        <translation>Erreur d&apos;écriture du premier fichier - %1</translation>
    </message>
    <message>
        <source>A link that leads nowhere stands under this name</source>
        <translation>Un lien qui ne mène nulle part porte ce nom</translation>
    </message>
    <message>
        <source>The file exists already</source>
        <translation>Le fichier existe déjà</translation>
    </message>
    <message>
        <source>The file exists already and cannot be read: %1</source>
        <translation>Le fichier existe déjà et ne peut pas être lu : %1</translation>
    </message>
    <message>
        <source>the file does not hold what was written to it</source>
        <translation>le fichier ne contient pas ce qui y a été écrit</translation>
    </message>
    <message>
        <source>another file stands under its name now</source>
        <translation>un autre fichier porte maintenant son nom</translation>
    </message>
    <message>
        <source>Another program is writing this file</source>
        <translation>Un autre programme écrit ce fichier</translation>
    </message>
    <message>
        <source>%1 The device is held open by another program.</source>
        <translation>%1 Un autre programme tient le périphérique ouvert.</translation>
    </message>
    <message>
        <source>Error processing &quot;%1&quot; -</source>
        <translation>Erreur de traitement de « %1 » -</translation>
    </message>
    <message>
        <source>invalid argument (error %1)</source>
        <translation>valeur non valide (erreur %1)</translation>
    </message>
    <message>
        <source>invalid pointer (error %1)</source>
        <translation>pointeur non valide (erreur %1)</translation>
    </message>
    <message>
        <source>%1: entry %2</source>
        <translation>%1 : entrée %2</translation>
    </message>
    <message>
        <source>line %1, column %2</source>
        <translation>ligne %1, colonne %2</translation>
    </message>
    <message>
        <source>%1: line %2, column %3</source>
        <translation>%1 : ligne %2, colonne %3</translation>
    </message>
    <message>
        <source>no JSON: %1</source>
        <translation>pas du JSON : %1</translation>
    </message>
    <message>
        <source>the file ends early</source>
        <translation>le fichier finit trop tôt</translation>
    </message>
    <message>
        <source>too large for a job file. Accepted: less than 64 MiB</source>
        <translation>trop grand pour un fichier de travail. Accepté : moins de 64 Mio</translation>
    </message>
    <message>
        <source>a text or number of more than %1 bytes</source>
        <translation>un texte ou un nombre de plus de %1 octets</translation>
    </message>
    <message>
        <source>not an object. Accepted: %1</source>
        <translation>pas un objet. Accepté : %1</translation>
    </message>
    <message>
        <source>not an object. Accepted: for example %1</source>
        <translation>pas un objet. Accepté, par exemple : %1</translation>
    </message>
    <message>
        <source>unknown key &quot;%1&quot;. Accepted: %2</source>
        <translation>clé inconnue « %1 ». Acceptées : %2</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is given twice</source>
        <translation>« %1 » est donné deux fois</translation>
    </message>
    <message>
        <source>%1 &quot;%2&quot; cannot be read. Accepted: %3</source>
        <translation>%1 « %2 » ne peut pas être lu. Accepté : %3</translation>
    </message>
    <message>
        <source>%1 is missing. Accepted: %2</source>
        <translation>%1 manque. Accepté : %2</translation>
    </message>
    <message>
        <source>end and duration exclude each other. Accepted: one of them, or none for the recording&apos;s end</source>
        <translation>end et duration s&apos;excluent. Accepté : l&apos;un d&apos;eux, ou aucun jusqu&apos;à la fin de l&apos;enregistrement</translation>
    </message>
    <message>
        <source>one entry too many. Accepted: at most %1</source>
        <translation>une entrée de trop. Accepté : %1 au plus</translation>
    </message>
    <message>
        <source>%1 entries. Accepted: at most %2</source>
        <translation>%1 entrées. Accepté : %2 au plus</translation>
    </message>
    <message>
        <source>&quot;entries&quot; is no list. Accepted: a list of objects</source>
        <translation>« entries » n&apos;est pas une liste. Accepté : une liste d&apos;objets</translation>
    </message>
    <message>
        <source>&quot;local_time&quot; is neither true nor false</source>
        <translation>« local_time » n&apos;est ni true ni false</translation>
    </message>
    <message>
        <source>&quot;recorded&quot; cannot be read. Accepted: %1</source>
        <translation>« recorded » ne peut pas être lu. Accepté : %1</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no text. Accepted: a path</source>
        <translation>« %1 » n&apos;est pas un texte. Accepté : un chemin</translation>
    </message>
    <message>
        <source>&quot;%1&quot; holds a character 0. Accepted: a path</source>
        <translation>« %1 » contient un caractère 0. Accepté : un chemin</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is neither a text nor a number</source>
        <translation>« %1 » n&apos;est ni un texte ni un nombre</translation>
    </message>
    <message>
        <source>no output has a bandwidth of %1 Hz</source>
        <translation>aucune sortie n&apos;a une largeur de bande de %1 Hz</translation>
    </message>
    <message>
        <source>the start time is out of range.</source>
        <translation>l&apos;heure de début est hors limites.</translation>
    </message>
    <message>
        <source>the end time is out of range.</source>
        <translation>l&apos;heure de fin est hors limites.</translation>
    </message>
    <message>
        <source>Accepted: a start from %1 (+0) to before %2 (+%3), an end after the start and not after %4, a duration that is not 0 and ends before %5</source>
        <translation>Accepté : un début de %1 (+0) à avant %2 (+%3), une fin après le début et pas après %4, une durée qui n&apos;est pas 0 et finit avant %5</translation>
    </message>
    <message>
        <source>16 or 32</source>
        <translation>16 ou 32</translation>
    </message>
    <message>
        <source>a folder</source>
        <translation>un dossier</translation>
    </message>
    <message>
        <source>a whole number from 1 to 100000</source>
        <translation>un nombre entier de 1 à 100000</translation>
    </message>
    <message>
        <source>100MB, 1GB or RF64</source>
        <translation>100MB, 1GB ou RF64</translation>
    </message>
    <message>
        <source>whole Hz, with the suffix k, M or G if wanted, for example 7100000, 7100k or 7.1M</source>
        <translation>des Hz entiers, suivis de k, M ou G si l&apos;on veut, par exemple 7100000, 7100k ou 7.1M</translation>
    </message>
    <message>
        <source>whole seconds, H:MM or H:MM:SS, for example 90, 1:30 or 0:01:30</source>
        <translation>des secondes entières, H:MM ou H:MM:SS, par exemple 90, 1:30 ou 0:01:30</translation>
    </message>
    <message>
        <source>a date and time with its zone, in whole seconds, for example 2026-11-21T12:00:00Z or 2026-11-21T14:00+02:00, or +SECONDS from the recording&apos;s start, for example +90</source>
        <translation>une date et une heure avec leur fuseau, en secondes entières, par exemple 2026-11-21T12:00:00Z ou 2026-11-21T14:00+02:00, ou +SECONDES depuis le début de l&apos;enregistrement, par exemple +90</translation>
    </message>
    <message>
        <source>a date and time with its zone, in whole seconds, for example 2026-11-21T12:00:00Z or 2026-11-21T14:00+02:00</source>
        <translation>une date et une heure avec leur fuseau, en secondes entières, par exemple 2026-11-21T12:00:00Z ou 2026-11-21T14:00+02:00</translation>
    </message>
    <message>
        <source>%1, which describes it, cannot be had any more</source>
        <translation>%1, qui le décrit, n&apos;est plus accessible</translation>
    </message>
    <message>
        <source>%1, which describes it, has changed since it was analysed</source>
        <translation>%1, qui le décrit, a changé depuis son analyse</translation>
    </message>
    <message>
        <source>%1 exists and tells of another recording</source>
        <translation>%1 existe et décrit un autre enregistrement</translation>
    </message>
</context>
<context>
    <name>WaysOut</name>
    <message>
        <source>No program of this desktop takes it. Open it with a program of your own, or install the desktop&apos;s opener; on Linux that is xdg-open, of the package xdg-utils.</source>
        <translation>Aucun programme de ce bureau ne le prend. Ouvrez-le avec un programme à vous, ou installez l&apos;ouvreur du bureau ; sous Linux c&apos;est xdg-open, du paquet xdg-utils.</translation>
    </message>
    <message>
        <source>It is not there any more. Connect its disk or put it back, or choose another.</source>
        <translation>Il n&apos;est plus là. Branchez son disque, remettez-le, ou choisissez-en un autre.</translation>
    </message>
    <message>
        <source>The recording is gone since it was chosen. Connect its disk or put it back, then start again.</source>
        <translation>L&apos;enregistrement a disparu depuis qu&apos;il a été choisi. Branchez son disque ou remettez-le, puis redémarrez.</translation>
    </message>
    <message>
        <source>The recording is there, but cannot be read. Ask for the right to read it, or copy it to where you may.</source>
        <translation>L&apos;enregistrement est là, mais ne peut pas être lu. Demandez le droit de le lire, ou copiez-le là où vous l&apos;avez.</translation>
    </message>
    <message>
        <source>Create the folder or connect its disk, or choose another folder for the entries.</source>
        <translation>Créez le dossier, branchez son disque, ou choisissez un autre dossier pour les entrées.</translation>
    </message>
    <message>
        <source>Choose a folder for the entries that you may write to.</source>
        <translation>Choisissez pour les entrées un dossier où vous pouvez écrire.</translation>
    </message>
    <message>
        <source>Choose another folder for the entries.</source>
        <translation>Choisissez un autre dossier pour les entrées.</translation>
    </message>
    <message>
        <source>Connect the disk or choose another folder, then start again; what exists is left out.</source>
        <translation>Connectez le disque ou choisissez un autre dossier, puis démarrez encore ; ce qui existe est laissé de côté.</translation>
    </message>
    <message>
        <source>What failed stays on the list: put the cause right, and press Start again.</source>
        <translation>Ce qui a échoué reste dans la liste : remédiez à la cause, et démarrez encore.</translation>
    </message>
    <message>
        <source>It is there, but may not be read. Ask for the right to read it.</source>
        <translation>Il est là, mais ne peut pas être lu. Demandez le droit de le lire.</translation>
    </message>
    <message>
        <source>Its disk or the connection to it is failing. Check it, then try again.</source>
        <translation>Son disque ou la connexion vers celui-ci est en panne. Vérifiez-le, puis réessayez.</translation>
    </message>
    <message>
        <source>The list is still there. Save it in another place with Save As, in the menu of Job.</source>
        <translation>La liste est toujours là. Enregistrez-la ailleurs avec Enregistrer sous, dans le menu Tâche.</translation>
    </message>
    <message>
        <source>Nothing can be written there. Choose another folder for the entries, or check its disk.</source>
        <translation>Rien ne peut y être écrit. Choisissez un autre dossier pour les entrées, ou vérifiez son disque.</translation>
    </message>
</context>
<context>
    <name>carvello::CAboutDlg</name>
    <message>
        <source>Copying measures the disks in use and a short cut, which takes some seconds.</source>
        <translation>La copie mesure les disques utilisés et une courte découpe, ce qui prend quelques secondes.</translation>
    </message>
    <message>
        <source>A job is at work, so the disks and a short cut are not measured.</source>
        <translation>Une tâche est en cours : les disques et une courte découpe ne sont pas mesurés.</translation>
    </message>
    <message>
        <source>Looking at the system…</source>
        <translation>Examen du système…</translation>
    </message>
    <message>
        <source>The details are on the clipboard.</source>
        <translation>Les détails sont dans le presse-papiers.</translation>
    </message>
</context>
<context>
    <name>carvello::CAnnouncer</name>
    <message>
        <source>Progress: %1 %</source>
        <translation>Progression : %1 %</translation>
    </message>
    <message>
        <source>and %1 more</source>
        <translation>et %1 de plus</translation>
    </message>
</context>
<context>
    <name>carvello::CCarvelloDlg</name>
    <message>
        <source>WAV recording files (*.WAV)|*.WAV|Winradio files (*.DDC)|*.DDC||</source>
        <translation>Enregistrements WAV (*.WAV)|*.WAV|Fichiers Winradio (*.DDC)|*.DDC||</translation>
    </message>
    <message>
        <source>Select the folder where the output files are created</source>
        <translation>Choisir le dossier où les fichiers de sortie sont créés</translation>
    </message>
    <message>
        <source>Hint</source>
        <translation>Remarque</translation>
    </message>
    <message>
        <source>Hint: %1</source>
        <translation>Remarque : %1</translation>
    </message>
    <message>
        <source>Open Job</source>
        <translation>Ouvrir la tâche</translation>
    </message>
    <message>
        <source>The job names no output folder. Choose one first.</source>
        <translation>La tâche ne nomme pas de dossier de sortie. Choisissez-en un d&apos;abord.</translation>
    </message>
    <message>
        <source>The job names no recording. Choose the one that it is for first.</source>
        <translation>La tâche ne nomme pas d&apos;enregistrement. Choisissez d&apos;abord celui auquel elle est destinée.</translation>
    </message>
    <message>
        <source>The recording of the job cannot be read:
%1
Choose another one first.</source>
        <translation>L&apos;enregistrement de la tâche ne peut pas être lu :
%1
Choisissez-en d&apos;abord un autre.</translation>
    </message>
    <message>
        <source>Entries that do not fit this recording and are left out: %1 of %2. The first of them:
%3</source>
        <translation>Entrées qui ne vont pas avec cet enregistrement et sont laissées de côté : %1 sur %2. La première :
%3</translation>
    </message>
    <message>
        <source>is a file of the recording</source>
        <translation>est un fichier de l&apos;enregistrement</translation>
    </message>
    <message>
        <source>Save Job</source>
        <translation>Enregistrer la tâche</translation>
    </message>
    <message>
        <source>The list of %1 can be put back. Entries: %2</source>
        <translation>La liste de %1 peut être remise. Entrées : %2</translation>
    </message>
    <message>
        <source>Put Bac&amp;k</source>
        <translation>Re&amp;mettre</translation>
    </message>
    <message>
        <source>Entries that keep the folder they were added with: %1</source>
        <translation>Entrées qui gardent le dossier avec lequel elles ont été ajoutées : %1</translation>
    </message>
    <message>
        <source>&amp;Move to This Folder</source>
        <translation>Dép&amp;lacer vers ce dossier</translation>
    </message>
    <message>
        <source>Waiting for %1…</source>
        <translation>Attente de %1…</translation>
    </message>
    <message>
        <source>Recordings are being cut</source>
        <translation>Des enregistrements sont découpés</translation>
    </message>
    <message>
        <source>The run has ended</source>
        <translation>Le passage est terminé</translation>
    </message>
    <message>
        <source>Nothing was written</source>
        <translation>Rien n&apos;a été écrit</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>&amp;Modifier</translation>
    </message>
    <message>
        <source>&amp;Delete</source>
        <translation>&amp;Supprimer</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Copier</translation>
    </message>
    <message>
        <source>Select &amp;all</source>
        <translation>&amp;Tout sélectionner</translation>
    </message>
    <message>
        <source>C&amp;olumns</source>
        <translation>C&amp;olonnes</translation>
    </message>
    <message>
        <source>Sums of the list</source>
        <translation>Sommes de la liste</translation>
    </message>
    <message>
        <source>Sums of the list: %1</source>
        <translation>Sommes de la liste : %1</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no bandwidth: type 12.5k, 10 kHz or 12500 Hz</source>
        <translation>« %1 » n&apos;est pas une largeur de bande : tapez 12.5k, 10 kHz ou 12500 Hz</translation>
    </message>
    <message>
        <source>A bandwidth of %1 cannot be cut: 10 Hz to %2</source>
        <translation>Une largeur de bande de %1 ne peut pas être découpée : 10 Hz à %2</translation>
    </message>
    <message>
        <source>%1 is outside the recording</source>
        <translation>%1 est hors de l&apos;enregistrement</translation>
    </message>
    <message>
        <source>&amp;Is it %1?</source>
        <translation>O&amp;K pour %1 ?</translation>
    </message>
    <message>
        <source>%1: is it %2?</source>
        <translation>%1 : est-ce %2 ?</translation>
    </message>
    <message>
        <source>Open Recording</source>
        <translation>Ouvrir l&apos;enregistrement</translation>
    </message>
    <message>
        <source>Entries that no output can come of: %1. The first of them:
%2

Edit or delete them, then save again.</source>
        <translation>Entrées dont aucune sortie ne peut résulter : %1. La première :
%2

Modifiez-les ou supprimez-les, puis enregistrez de nouveau.</translation>
    </message>
    <message>
        <source>Stopping, waiting for %1…</source>
        <translation>Arrêt en cours, attente de %1…</translation>
    </message>
    <message>
        <source>No answer from %1. Connect its disk, and the run goes on; Stop ends it.</source>
        <translation>Pas de réponse de %1. Reconnectez son disque et le passage continue ; Arrêter y met fin.</translation>
    </message>
    <message>
        <source>The run waits for a disk</source>
        <translation>Le passage attend un disque</translation>
    </message>
    <message>
        <source>No answer from %1, so the run cannot be stopped. It ends by itself when the disk is connected again. Close the program all the same? The files of the run are left as they are, unfinished.</source>
        <translation>Pas de réponse de %1, le passage ne peut donc pas être arrêté. Il se termine de lui-même quand le disque est de nouveau connecté. Fermer tout de même le programme ? Les fichiers du passage restent tels quels, inachevés.</translation>
    </message>
    <message>
        <source>All recordings</source>
        <translation>Tous les enregistrements</translation>
    </message>
    <message>
        <source>SigMF recordings (*.sigmf-meta, …)</source>
        <translation>Enregistrements SigMF (*.sigmf-meta, …)</translation>
    </message>
    <message>
        <source>SDRangel files (*.sdriq)</source>
        <translation>Fichiers SDRangel (*.sdriq)</translation>
    </message>
    <message>
        <source>Raw samples (*.cf32, *.cs16, *.cu8, …)</source>
        <translation>Échantillons bruts (*.cf32, *.cs16, *.cu8, …)</translation>
    </message>
    <message>
        <source>All files</source>
        <translation>Tous les fichiers</translation>
    </message>
    <message>
        <source>sample type</source>
        <translation>type des échantillons</translation>
    </message>
    <message>
        <source>sample rate</source>
        <translation>fréquence d’échantillonnage</translation>
    </message>
    <message>
        <source>centre frequency</source>
        <translation>fréquence centrale</translation>
    </message>
    <message>
        <source>start</source>
        <translation>début</translation>
    </message>
    <message>
        <source>With what was said of it, the recording cannot be read; see the log.</source>
        <translation>Avec ce qui en a été dit, l’enregistrement ne peut pas être lu ; voir le journal.</translation>
    </message>
    <message>
        <source>Not told by the file: %1</source>
        <translation>Le fichier ne dit pas : %1</translation>
    </message>
    <message>
        <source>&amp;Give…</source>
        <translation>Comp&amp;léter…</translation>
    </message>
    <message>
        <source>Repair Recording</source>
        <translation>Réparer l’enregistrement</translation>
    </message>
    <message>
        <source>Damaged files: %1. The first of them:
%2</source>
        <translation>Fichiers endommagés : %1. Le premier :
%2</translation>
    </message>
    <message>
        <source>Into a &amp;Folder…</source>
        <translation>Dans un &amp;dossier…</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>In &amp;Place</source>
        <translation>Sur &amp;place</translation>
    </message>
    <message>
        <source>Only the head is written to; its old bytes stand beside the file meanwhile</source>
        <translation>Seul l’en-tête est modifié ; ses anciens octets restent entre-temps à côté du fichier</translation>
    </message>
    <message>
        <source>Damaged: %1</source>
        <translation>Endommagé : %1</translation>
    </message>
    <message>
        <source>Damaged files: %1. The first of them: %2</source>
        <translation>Fichiers endommagés : %1. Le premier : %2</translation>
    </message>
    <message>
        <source>Repair…</source>
        <translation>Réparer…</translation>
    </message>
    <message>
        <source>Select the folder for the repaired files</source>
        <translation>Choisir le dossier des fichiers réparés</translation>
    </message>
    <message>
        <source>Files repaired: %1</source>
        <translation>Fichiers réparés : %1</translation>
    </message>
</context>
<context>
    <name>carvello::CFactsDlg</name>
    <message>
        <source>%1-bit integers, signed</source>
        <translation>entiers de %1 bits, signés</translation>
    </message>
    <message>
        <source>%1-bit integers, unsigned</source>
        <translation>entiers de %1 bits, non signés</translation>
    </message>
    <message>
        <source>%1-bit floats</source>
        <translation>flottants de %1 bits</translation>
    </message>
    <message>
        <source>%1, big-endian</source>
        <translation>%1, gros-boutiste</translation>
    </message>
    <message>
        <source>Facts of the Recording</source>
        <translation>Données de l’enregistrement</translation>
    </message>
    <message>
        <source>for example 2.4 MHz</source>
        <translation>par exemple 2.4 MHz</translation>
    </message>
    <message>
        <source>for example 7.1 MHz</source>
        <translation>par exemple 7.1 MHz</translation>
    </message>
    <message>
        <source>UTC</source>
        <translation>UTC</translation>
    </message>
    <message>
        <source>Local time</source>
        <translation>Heure locale</translation>
    </message>
    <message>
        <source>Sample &amp;rate:</source>
        <translation>F&amp;réquence d’échantillonnage :</translation>
    </message>
    <message>
        <source>&amp;Centre frequency:</source>
        <translation>Fréquence &amp;centrale :</translation>
    </message>
    <message>
        <source>&amp;Start:</source>
        <translation>&amp;Début :</translation>
    </message>
    <message>
        <source>Time zone of the start</source>
        <translation>Fuseau horaire du début</translation>
    </message>
    <message>
        <source>Hours and minutes ahead of UTC can be typed, for example +02:00</source>
        <translation>Les heures et minutes d’avance sur UTC peuvent être saisies, par exemple +02:00</translation>
    </message>
    <message>
        <source>Sample &amp;type:</source>
        <translation>&amp;Type des échantillons :</translation>
    </message>
    <message>
        <source>What the files tell is filled in. A field that is emptied is left to them.</source>
        <translation>Ce que disent les fichiers est rempli. Un champ vidé leur est laissé.</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>As the file tells</source>
        <translation>Selon le fichier</translation>
    </message>
    <message>
        <source>The files do not tell it.</source>
        <translation>Les fichiers ne le disent pas.</translation>
    </message>
    <message>
        <source>No sample rate. Accepted: for example 2.4 MHz, 250k or 48000 Hz</source>
        <translation>Pas une fréquence d’échantillonnage. Accepté : par exemple 2.4 MHz, 250k ou 48000 Hz</translation>
    </message>
    <message>
        <source>No frequency. Accepted: for example 7.1 MHz, 7100 kHz or 10.489G</source>
        <translation>Pas une fréquence. Accepté : par exemple 7.1 MHz, 7100 kHz ou 10.489G</translation>
    </message>
    <message>
        <source>No time zone. Accepted: %1, %2 or hours and minutes ahead of UTC, for example +02:00</source>
        <translation>Pas un fuseau horaire. Accepté : %1, %2 ou les heures et minutes d’avance sur UTC, par exemple +02:00</translation>
    </message>
    <message>
        <source>No date and time. Accepted: for example 2026-11-21 12:00:00, with decimals if wanted</source>
        <translation>Pas une date avec heure. Accepté : par exemple 2026-11-21 12:00:00, avec décimales au besoin</translation>
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
        <translation>&amp;Ouvrir…</translation>
    </message>
    <message>
        <source>Open &amp;Recent</source>
        <translation>&amp;Récents</translation>
    </message>
    <message>
        <source>&amp;Earlier Lists</source>
        <translation>Listes &amp;précédentes</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>&amp;Enregistrer</translation>
    </message>
    <message>
        <source>Save &amp;As…</source>
        <translation>Enregistrer &amp;sous…</translation>
    </message>
    <message>
        <source>&amp;Undo</source>
        <translation>&amp;Annuler</translation>
    </message>
    <message>
        <source>Re&amp;do</source>
        <translation>Ré&amp;tablir</translation>
    </message>
    <message>
        <source>Count &amp;Frames in RF64 Files</source>
        <translation>Compter les &amp;trames dans les fichiers RF64</translation>
    </message>
    <message>
        <source>RF64 files tell their samples in frames, as most programs expect, not in single values</source>
        <translation>Les fichiers RF64 indiquent leurs échantillons en trames, comme la plupart des programmes s&apos;y attendent, et non en valeurs isolées</translation>
    </message>
    <message>
        <source>&amp;Keep Lists by Themselves</source>
        <translation>&amp;Garder les listes d&apos;elles-mêmes</translation>
    </message>
    <message>
        <source>None</source>
        <translation>Aucune</translation>
    </message>
    <message>
        <source>%1: %2, entries: %3</source>
        <translation>%1 : %2, entrées : %3</translation>
    </message>
    <message>
        <source>Waiting for %1…</source>
        <translation>Attente de %1…</translation>
    </message>
    <message>
        <source>&amp;Correct Facts of the Recording…</source>
        <translation>&amp;Corriger les données de l’enregistrement…</translation>
    </message>
    <message>
        <source>Say what its files do not tell, or tell wrongly: rate, centre, start and time zone, type</source>
        <translation>Dire ce que ses fichiers ne disent pas, ou mal : fréquences, début et fuseau horaire, type</translation>
    </message>
    <message>
        <source>A&amp;bout Carvello…</source>
        <translation>À propos &amp;de Carvello…</translation>
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
        <translation>&amp;Copier</translation>
    </message>
    <message>
        <source>Select &amp;All</source>
        <translation>&amp;Tout sélectionner</translation>
    </message>
</context>
<context>
    <name>carvello::CMyMFCEditBrowseCtrl</name>
    <message>
        <source>Open</source>
        <translation>Ouvrir</translation>
    </message>
    <message>
        <source>Browse for a file</source>
        <translation>Parcourir pour un fichier</translation>
    </message>
    <message>
        <source>Browse for a folder</source>
        <translation>Parcourir pour un dossier</translation>
    </message>
</context>
<context>
    <name>carvello::CMyMFCMaskedEdit</name>
    <message>
        <source>&amp;Undo</source>
        <translation>&amp;Annuler</translation>
    </message>
    <message>
        <source>Cu&amp;t</source>
        <translation>Co&amp;uper</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Copier</translation>
    </message>
    <message>
        <source>&amp;Paste</source>
        <translation>C&amp;oller</translation>
    </message>
    <message>
        <source>Select &amp;All</source>
        <translation>&amp;Tout sélectionner</translation>
    </message>
</context>
<context>
    <name>carvello::CMyRichEditCtrl</name>
    <message>
        <source>Carvello Help</source>
        <translation>Aide de Carvello</translation>
    </message>
    <message>
        <source>Help text</source>
        <translation>Texte d&apos;aide</translation>
    </message>
</context>
<context>
    <name>carvello::COfferStrip</name>
    <message>
        <source>Leave it as it is</source>
        <translation>Laisser tel quel</translation>
    </message>
    <message>
        <source>Dismiss</source>
        <translation>Écarter</translation>
    </message>
</context>
<context>
    <name>carvello::COutcomeLabel</name>
    <message>
        <source>Outcome</source>
        <translation>Résultat</translation>
    </message>
    <message>
        <source>Outcome: %1</source>
        <translation>Résultat : %1</translation>
    </message>
</context>
<context>
    <name>carvello::CPartChoice</name>
    <message>
        <source>%1 wide</source>
        <translation>large de %1</translation>
    </message>
    <message>
        <source>Part:</source>
        <translation>Partie :</translation>
    </message>
    <message>
        <source>Part of the recording</source>
        <translation>Partie de l’enregistrement</translation>
    </message>
    <message>
        <source>The recording has several parts, which are cut one by one</source>
        <translation>L’enregistrement a plusieurs parties, à découper une par une</translation>
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
        <translation>Largeur</translation>
    </message>
    <message>
        <source>dB</source>
        <translation>dB</translation>
    </message>
    <message>
        <source>Stopped</source>
        <translation>Arrêté</translation>
    </message>
    <message>
        <source>Looking…</source>
        <translation>Recherche…</translation>
    </message>
    <message>
        <source>Looking… %1 %</source>
        <translation>Recherche… %1 %</translation>
    </message>
    <message>
        <source>Nothing stands out of the noise</source>
        <translation>Rien ne dépasse du bruit</translation>
    </message>
    <message>
        <source>1 signal found</source>
        <translation>1 signal trouvé</translation>
    </message>
    <message>
        <source>%1 signals found</source>
        <translation>%1 signaux trouvés</translation>
    </message>
    <message>
        <source>Stop searchin&amp;g</source>
        <translation>&amp;Cesser la recherche</translation>
    </message>
    <message>
        <source>&amp;Find signals</source>
        <translation>&amp;Chercher des signaux</translation>
    </message>
</context>
<context>
    <name>carvello::CSpectrumLine</name>
    <message>
        <source>Average</source>
        <translation>Moyenne</translation>
    </message>
    <message>
        <source>Peak</source>
        <translation>Crête</translation>
    </message>
</context>
<context>
    <name>carvello::CSpectrumPlot</name>
    <message>
        <source>Spectrum line</source>
        <translation>Ligne du spectre</translation>
    </message>
    <message>
        <source>Waterfall</source>
        <translation>Cascade</translation>
    </message>
    <message>
        <source>Frequencies</source>
        <translation>Fréquences</translation>
    </message>
    <message>
        <source>Drag to choose frequencies for the whole recording; double-click to show all</source>
        <translation>Faites glisser pour choisir des fréquences pour tout l&apos;enregistrement ; un double-clic montre tout</translation>
    </message>
    <message>
        <source>Times</source>
        <translation>Heures</translation>
    </message>
    <message>
        <source>Drag to pan; double-click to show all</source>
        <translation>Faites glisser pour déplacer ; un double-clic montre tout</translation>
    </message>
    <message>
        <source>Levels of the line</source>
        <translation>Niveaux de la ligne</translation>
    </message>
    <message>
        <source>Scale of levels</source>
        <translation>Échelle des niveaux</translation>
    </message>
    <message>
        <source>Drag the handles to set the levels of the colours; double-click for automatic levels</source>
        <translation>Faites glisser les poignées pour régler les niveaux des couleurs ; un double-clic les rend automatiques</translation>
    </message>
    <message>
        <source>How well the rows are known</source>
        <translation>À quel point les lignes sont connues</translation>
    </message>
    <message>
        <source>Full: every sample was looked at. Dotted: some were. Empty: what is beside it stands in, or nothing is known</source>
        <translation>Plein : tous les échantillons ont été regardés. Pointillé : certains. Vide : ce qui est à côté les remplace, ou rien n&apos;est connu</translation>
    </message>
    <message>
        <source>Clock</source>
        <translation>Horloge</translation>
    </message>
    <message>
        <source>The clock that the times are of, as in the main window</source>
        <translation>L&apos;horloge des heures, comme dans la fenêtre principale</translation>
    </message>
    <message>
        <source>UTC</source>
        <translation>UTC</translation>
    </message>
    <message>
        <source>local</source>
        <translation>locale</translation>
    </message>
</context>
<context>
    <name>carvello::CSpectrumWindow</name>
    <message>
        <source>Spectrum - %1</source>
        <translation>Spectre - %1</translation>
    </message>
    <message>
        <source>Spectrum</source>
        <translation>Spectre</translation>
    </message>
    <message>
        <source>%1 · %2 points, %3 a bin</source>
        <translation>%1 · %2 points, %3 par canal</translation>
    </message>
    <message>
        <source>No recording</source>
        <translation>Aucun enregistrement</translation>
    </message>
    <message>
        <source>Overview complete</source>
        <translation>Aperçu complet</translation>
    </message>
    <message>
        <source>Job runs, overview %1 %</source>
        <translation>Tâche en cours, aperçu %1 %</translation>
    </message>
    <message>
        <source>Overview %1 %</source>
        <translation>Aperçu %1 %</translation>
    </message>
    <message>
        <source>Drag over the waterfall</source>
        <translation>Faites glisser sur la cascade</translation>
    </message>
    <message>
        <source>. To be added after the run</source>
        <translation>. À ajouter après le passage</translation>
    </message>
    <message>
        <source>. Choose an output folder to add it</source>
        <translation>. Choisissez un dossier de sortie pour l&apos;ajouter</translation>
    </message>
    <message>
        <source>What is to be cut: %1</source>
        <translation>Ce qui sera découpé : %1</translation>
    </message>
</context>
<context>
    <name>carvello::CWaitPanel</name>
    <message>
        <source>Waiting for %1…</source>
        <translation>Attente de %1…</translation>
    </message>
    <message>
        <source>Give up</source>
        <translation>Abandonner</translation>
    </message>
    <message>
        <source>No answer from %1</source>
        <translation>Pas de réponse de %1</translation>
    </message>
    <message>
        <source>Try again</source>
        <translation>Réessayer</translation>
    </message>
    <message>
        <source>Stop waiting for the disk or the network, also with Esc</source>
        <translation>Ne plus attendre le disque ou le réseau, aussi avec Échap</translation>
    </message>
    <message>
        <source>Read it again</source>
        <translation>Relire</translation>
    </message>
</context>
<context>
    <name>carvello::CWaterfallView</name>
    <message>
        <source>Waterfall</source>
        <translation>Cascade</translation>
    </message>
    <message>
        <source>Waterfall: %1</source>
        <translation>Cascade : %1</translation>
    </message>
    <message>
        <source>Reading the recording…</source>
        <translation>Lecture de l&apos;enregistrement…</translation>
    </message>
    <message>
        <source>Hatched: not read yet. %1 % known</source>
        <translation>Hachuré : pas encore lu. %1 % connus</translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <source>Cuts narrow-band IQ recordings out of a wide-band one.</source>
        <translation>Découpe des enregistrements IQ à bande étroite dans un enregistrement à large bande.</translation>
    </message>
    <message>
        <source>The recording or the job file to open.</source>
        <translation>L&apos;enregistrement ou le fichier de tâche à ouvrir.</translation>
    </message>
</context>
</TS>
