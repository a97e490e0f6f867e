; What setup says, in the languages of the program. $0 is the folder or file that a text is about, $1 the option.

!macro Text NAME ENGLISH GERMAN FRENCH
  LangString Text${NAME} ${LANG_ENGLISH} "${ENGLISH}"
  LangString Text${NAME} ${LANG_GERMAN} "${GERMAN}"
  LangString Text${NAME} ${LANG_FRENCH} "${FRENCH}"
!macroend

!insertmacro Text Who "For whom" "Für wen" "Pour qui"
!insertmacro Text WhoBelow "Who gets Carvello on this computer." "Wer Carvello auf diesem Computer bekommt." \
  "Qui reçoit Carvello sur cet ordinateur."
!insertmacro Text ThisUser "Only for &me" "Nur für &mich" "Pour &moi seul"
!insertmacro Text ThisUserBelow "Needs no administrator rights. Goes into a folder of your own." \
  "Braucht keine Administratorrechte. Kommt in einen Ordner, der Ihnen gehört." \
  "Ne demande pas de droits d'administrateur. Va dans un dossier à vous."
!insertmacro Text AllUsers "For &all users of this computer" "Für &alle Benutzer dieses Computers" \
  "Pour &tous les utilisateurs de cet ordinateur"
!insertmacro Text AllUsersBelow "Needs administrator rights, which Windows asks for. Goes into Program Files." \
  "Braucht Administratorrechte, nach denen Windows fragt. Kommt in den Ordner der Programme." \
  "Demande des droits d'administrateur, que Windows réclame. Va dans le dossier des programmes."

!insertmacro Text Program "Carvello" "Carvello" "Carvello"
!insertmacro Text ProgramBelow "The window, the command line, the help and the licences." \
  "Das Fenster, die Befehlszeile, die Hilfe und die Lizenzen." \
  "La fenêtre, la ligne de commande, l'aide et les licences."
!insertmacro Text StartMenu "In the start menu" "Im Startmenü" "Dans le menu Démarrer"
!insertmacro Text StartMenuBelow "An entry that starts Carvello." "Ein Eintrag, der Carvello startet." \
  "Une entrée qui lance Carvello."
!insertmacro Text Desktop "On the desktop" "Auf dem Desktop" "Sur le bureau"
!insertmacro Text DesktopBelow "An icon that starts Carvello." "Ein Symbol, das Carvello startet." \
  "Une icône qui lance Carvello."
!insertmacro Text Associations "Offer for recordings and jobs" "Für Aufnahmen und Jobs anbieten" \
  "Proposer pour enregistrements et tâches"
!insertmacro Text AssociationsBelow \
  "Carvello stands under “Open with” of WAV, RF64, SigMF and JSON files. What opens them now goes on doing so." \
  "Carvello steht bei WAV-, RF64-, SigMF- und JSON-Dateien unter „Öffnen mit“. Was sie jetzt öffnet, öffnet sie weiterhin." \
  "Carvello figure sous « Ouvrir avec » des fichiers WAV, RF64, SigMF et JSON. Ce qui les ouvre à présent continue de le faire."
!insertmacro Text Path "carvello-cli in PATH" "carvello-cli in PATH" "carvello-cli dans PATH"
!insertmacro Text PathBelow "Every command prompt finds carvello-cli." "Jede Eingabeaufforderung findet carvello-cli." \
  "Toute invite de commandes trouve carvello-cli."

!insertmacro Text Shortcut "Cuts narrow-band IQ recordings out of wide-band ones" \
  "Schneidet schmalbandige IQ-Aufnahmen aus breitbandigen" "Découpe des enregistrements IQ étroits dans de larges"
!insertmacro Text RecordingFile "IQ recording" "IQ-Aufnahme" "Enregistrement IQ"
!insertmacro Text JobFile "Carvello job" "Carvello-Job" "Tâche de Carvello"
!insertmacro Text Finished "Carvello ${VERSION} is on this computer. Removing it leaves your settings, recordings and outputs." \
  "Carvello ${VERSION} ist auf diesem Computer. Wird es entfernt, bleiben Ihre Einstellungen, Aufnahmen und Ausgaben." \
  "Carvello ${VERSION} est sur cet ordinateur. Sa suppression laisse vos réglages, enregistrements et sorties."

!insertmacro Text Removal \
  "Carvello and what its setup made are removed. Your settings, recordings and outputs stay, and so does every file in the folder that setup did not put there." \
  "Carvello und was sein Setup angelegt hat, wird entfernt. Ihre Einstellungen, Aufnahmen und Ausgaben bleiben, ebenso jede Datei im Ordner, die nicht vom Setup stammt." \
  "Carvello et ce que son installation a créé sont supprimés. Vos réglages, enregistrements et sorties restent, de même que tout fichier du dossier qui n'en vient pas."
!insertmacro Text FilesStay "Not from setup, and therefore left: files in $INSTDIR" \
  "Nicht vom Setup und darum geblieben: Dateien in $INSTDIR" \
  "Ne viennent pas de l'installation et restent donc : des fichiers dans $INSTDIR"
!insertmacro Text SettingsStay \
  "Your settings stay in the registry: HKEY_CURRENT_USER\Software\Halvarn (V3)\Carvello and HKEY_CURRENT_USER\Software\Local Carvello" \
  "Ihre Einstellungen bleiben in der Registrierung: HKEY_CURRENT_USER\Software\Halvarn (V3)\Carvello und HKEY_CURRENT_USER\Software\Local Carvello" \
  "Vos réglages restent dans le registre : HKEY_CURRENT_USER\Software\Halvarn (V3)\Carvello et HKEY_CURRENT_USER\Software\Local Carvello"

!insertmacro Text NoOption \
  "$1 is no option. Accepted: /S /AllUsers or /CurrentUser /StartMenu=yes|no /Desktop=yes|no /Associations=yes|no /Path=yes|no /Language=en|de|fr and, as the last one, /D=FOLDER" \
  "$1 ist keine Option. Möglich: /S /AllUsers oder /CurrentUser /StartMenu=yes|no /Desktop=yes|no /Associations=yes|no /Path=yes|no /Language=en|de|fr und als letzte /D=ORDNER" \
  "$1 n'est pas une option. Possibles : /S /AllUsers ou /CurrentUser /StartMenu=yes|no /Desktop=yes|no /Associations=yes|no /Path=yes|no /Language=en|de|fr et, en dernier, /D=DOSSIER"
!insertmacro Text OldWindows "Carvello needs Windows 10 or later." "Carvello braucht Windows 10 oder neuer." \
  "Carvello demande Windows 10 ou plus récent."
!insertmacro Text Rights "This needs administrator rights." "Das braucht Administratorrechte." \
  "Ceci demande des droits d'administrateur."
!insertmacro Text TwoSetups "Another setup of Carvello is running." "Ein anderes Setup von Carvello läuft." \
  "Une autre installation de Carvello est en cours."
!insertmacro Text NoFolder "No folder to put Carvello into: $INSTDIR. Accepted: the full name of one, with drive or server." \
  "Kein Ordner, in den Carvello kommen kann: $INSTDIR. Möglich: der volle Name eines Ordners, mit Laufwerk oder Server." \
  "Pas un dossier où mettre Carvello : $INSTDIR. Possible : le nom entier d'un dossier, avec lecteur ou serveur."
!insertmacro Text LongFolder "The folder's name is too long: $INSTDIR" "Der Name des Ordners ist zu lang: $INSTDIR" \
  "Le nom du dossier est trop long : $INSTDIR"
!insertmacro Text ForeignFile "There is such a file already, which setup does not replace: $0. Choose another folder." \
  "So eine Datei gibt es dort schon, und das Setup ersetzt sie nicht: $0. Wählen Sie einen anderen Ordner." \
  "Un tel fichier s'y trouve déjà, et l'installation ne le remplace pas : $0. Choisissez un autre dossier."
!insertmacro Text Running "Carvello is running: $0. Close it first; a job that is at work goes on until then." \
  "Carvello läuft: $0. Beenden Sie es zuerst; ein Job, der läuft, arbeitet bis dahin weiter." \
  "Carvello est en cours : $0. Fermez-le d'abord ; une tâche en cours continue jusque-là."
!insertmacro Text NotWritten "Could not write all files to $INSTDIR. What was written is removed again." \
  "Nicht alle Dateien konnten nach $INSTDIR geschrieben werden. Was geschrieben wurde, wird wieder entfernt." \
  "Tous les fichiers n'ont pas pu être écrits dans $INSTDIR. Ce qui a été écrit est supprimé."
!insertmacro Text EarlierStays "Could not remove all files of Carvello from $0." \
  "Nicht alle Dateien von Carvello konnten aus $0 entfernt werden." \
  "Tous les fichiers de Carvello n'ont pas pu être supprimés de $0."
