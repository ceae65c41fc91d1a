<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr" sourcelanguage="en">
<context>
    <name>AdoptDialog</name>
    <message>
        <source>Use existing game files</source>
        <translation>Utiliser des fichiers de jeu existants</translation>
    </message>
    <message>
        <source>Game files that are on this machine already, from an older installation or from a copied disk, need not be downloaded. Name the folder that they are in: whatever matches is taken over, under whatever names. Nothing in the folder is changed.</source>
        <translation>Les fichiers de jeu qui se trouvent déjà sur cette machine, d&apos;une ancienne installation ou d&apos;un disque copié, n&apos;ont pas besoin d&apos;être téléchargés. Indiquez le dossier où ils sont : tout ce qui correspond est repris, quel que soit son nom. Rien n&apos;est modifié dans ce dossier.</translation>
    </message>
    <message>
        <source>&amp;Folder:</source>
        <translation>&amp;Dossier :</translation>
    </message>
    <message>
        <source>&amp;Browse...</source>
        <translation>&amp;Parcourir...</translation>
    </message>
    <message>
        <source>&amp;Link files instead of copying them</source>
        <translation>&amp;Lier les fichiers au lieu de les copier</translation>
    </message>
    <message>
        <source>They take no more room then, where both folders are on one disk</source>
        <translation>Ils ne prennent alors pas plus de place, si les deux dossiers sont sur le même disque</translation>
    </message>
    <message>
        <source>Linked files are shared: do not play from the old folder any more, nor change files in it. It may be deleted.</source>
        <translation>Les fichiers liés sont partagés : ne jouez plus depuis l&apos;ancien dossier et n&apos;y modifiez pas de fichiers. Il peut être supprimé.</translation>
    </message>
    <message>
        <source>&amp;Use these files</source>
        <translation>&amp;Utiliser ces fichiers</translation>
    </message>
    <message>
        <source>Folder with game files</source>
        <translation>Dossier des fichiers de jeu</translation>
    </message>
    <message>
        <source>There is no such folder.</source>
        <translation>Ce dossier n&apos;existe pas.</translation>
    </message>
    <message>
        <source>The folder cannot be read.</source>
        <translation>Le dossier ne peut pas être lu.</translation>
    </message>
    <message>
        <source>That folder is, or contains, the launcher&apos;s own shared cache.</source>
        <translation>Ce dossier est, ou contient, le cache partagé du lanceur.</translation>
    </message>
</context>
<context>
    <name>BundleUnpacker</name>
    <message>
        <source>Unpacking %1 of %2 files (%3)</source>
        <translation>Extraction : %1 fichiers sur %2 (%3)</translation>
    </message>
</context>
<context>
    <name>CacheMover</name>
    <message>
        <source>The settings cannot be written</source>
        <translation>Les paramètres ne peuvent pas être écrits</translation>
    </message>
    <message>
        <source>Please choose a folder</source>
        <translation>Veuillez choisir un dossier</translation>
    </message>
    <message>
        <source>There is no cache to move</source>
        <translation>Il n&apos;y a pas de cache à déplacer</translation>
    </message>
    <message>
        <source>The new folder must not lie in the old one, nor the old one in it</source>
        <translation>Le nouveau dossier ne doit pas se trouver dans l&apos;ancien, ni l&apos;ancien dans le nouveau</translation>
    </message>
    <message>
        <source>%1 is not empty</source>
        <translation>%1 n&apos;est pas vide</translation>
    </message>
    <message>
        <source>%1 cannot be written to</source>
        <translation>Impossible d&apos;écrire dans %1</translation>
    </message>
    <message>
        <source>The cache is in use: please wait until the update has ended</source>
        <translation>Le cache est utilisé : veuillez attendre la fin de la mise à jour</translation>
    </message>
    <message>
        <source>%1 are needed, but only %2 are free</source>
        <translation>%1 sont nécessaires, mais seulement %2 sont libres</translation>
    </message>
    <message>
        <source>Copying the cache</source>
        <translation>Copie du cache</translation>
    </message>
    <message>
        <source>Comparing the copy</source>
        <translation>Comparaison de la copie</translation>
    </message>
    <message>
        <source>Removing the old folder</source>
        <translation>Suppression de l&apos;ancien dossier</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1 : %2</translation>
    </message>
    <message>
        <source>%1 was not copied correctly</source>
        <translation>%1 n&apos;a pas été copié correctement</translation>
    </message>
</context>
<context>
    <name>ConnectionChecker</name>
    <message numerus="yes">
        <source>No answer within %n second(s)</source>
        <translation>
            <numerusform>Pas de réponse en %n seconde</numerusform>
            <numerusform>Pas de réponse en %n secondes</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Copier</name>
    <message>
        <source>Copying files</source>
        <translation>Copie des fichiers</translation>
    </message>
    <message>
        <source>Verifying files</source>
        <translation>Vérification des fichiers</translation>
    </message>
</context>
<context>
    <name>CustomWebPage</name>
    <message>
        <source>Ready</source>
        <translation>Prêt</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Erreur</translation>
    </message>
</context>
<context>
    <name>Diagnostics</name>
    <message>
        <source>Certificate error</source>
        <translation>Erreur de certificat</translation>
    </message>
    <message>
        <source>A certificate error has occurred:

%1

%2
</source>
        <translation>Une erreur de certificat s&apos;est produite :

%1

%2
</translation>
    </message>
    <message>
        <source>%1 in %2 s, %3/s</source>
        <translation>%1 en %2 s, %3/s</translation>
    </message>
    <message>
        <source>Failed after %1: %2</source>
        <translation>Échec après %1 : %2</translation>
    </message>
    <message>
        <source>Velkor Launcher %1, %2, %3
%4</source>
        <translation>Lanceur Velkor %1, %2, %3
%4</translation>
    </message>
    <message>
        <source>Download</source>
        <translation>Téléchargement</translation>
    </message>
    <message>
        <source>Cache</source>
        <translation>Cache</translation>
    </message>
    <message>
        <source>Route</source>
        <translation>Route</translation>
    </message>
</context>
<context>
    <name>DiagnosticsDialog</name>
    <message>
        <source>Network diagnostics</source>
        <translation>Diagnostic du réseau</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Progression</translation>
    </message>
    <message>
        <source>Results</source>
        <translation>Résultats</translation>
    </message>
    <message>
        <source>&amp;Run again</source>
        <translation>&amp;Recommencer</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Copier</translation>
    </message>
    <message>
        <source>&amp;Save...</source>
        <translation>&amp;Enregistrer...</translation>
    </message>
    <message>
        <source>Looking at the network and the disk. This takes some seconds.</source>
        <translation>Examen du réseau et du disque. Cela prend quelques secondes.</translation>
    </message>
    <message>
        <source>All hosts can be reached.</source>
        <translation>Tous les serveurs sont accessibles.</translation>
    </message>
    <message>
        <source>%1 of %2 hosts make trouble.</source>
        <translation>%1 serveurs sur %2 posent problème.</translation>
    </message>
    <message>
        <source>Save the results</source>
        <translation>Enregistrer les résultats</translation>
    </message>
    <message>
        <source>Text files (*.txt)</source>
        <translation>Fichiers texte (*.txt)</translation>
    </message>
    <message>
        <source>Saved.</source>
        <translation>Enregistré.</translation>
    </message>
    <message>
        <source>%1 could not be written: %2</source>
        <translation>%1 n&apos;a pas pu être écrit : %2</translation>
    </message>
</context>
<context>
    <name>DownloadControl</name>
    <message>
        <source>Paused</source>
        <translation>En pause</translation>
    </message>
    <message>
        <source>Waiting until no client runs</source>
        <translation>Attend qu&apos;aucun client ne tourne</translation>
    </message>
</context>
<context>
    <name>DownloadFromIndexTask</name>
    <message>
        <source>Not enough room in %1: %2 needed, %3 free</source>
        <translation>Pas assez de place dans %1 : %2 nécessaires, %3 libres</translation>
    </message>
    <message>
        <source>Looking for files in %1</source>
        <translation>Recherche de fichiers dans %1</translation>
    </message>
</context>
<context>
    <name>DownloadPlanDialog</name>
    <message>
        <source>Download for %1</source>
        <translation>Téléchargement pour %1</translation>
    </message>
    <message>
        <source>There does not seem to be enough room for %1.</source>
        <translation>Il ne semble pas y avoir assez de place pour %1.</translation>
    </message>
    <message>
        <source>%1 is about to be downloaded.</source>
        <translation>%1 va être téléchargé.</translation>
    </message>
    <message>
        <source>To be downloaded:</source>
        <translation>À télécharger :</translation>
    </message>
    <message>
        <source>There already:</source>
        <translation>Déjà là :</translation>
    </message>
    <message>
        <source>Room needed:</source>
        <translation>Place nécessaire :</translation>
    </message>
    <message>
        <source>Room left:</source>
        <translation>Place libre :</translation>
    </message>
    <message>
        <source>not known</source>
        <translation>inconnue</translation>
    </message>
    <message>
        <source>Folder:</source>
        <translation>Dossier :</translation>
    </message>
    <message>
        <source>The figure may be wrong, for example where the file system compresses files or where it makes room by itself. A download that finds no room stops; nothing is lost.</source>
        <translation>Ce chiffre peut être faux, par exemple si le système de fichiers compresse les fichiers ou libère lui-même de la place. Un téléchargement qui ne trouve pas de place s&apos;arrête ; rien n&apos;est perdu.</translation>
    </message>
    <message>
        <source>&quot;Not now&quot; pauses downloads until you resume them.</source>
        <translation>« Pas maintenant » suspend les téléchargements jusqu&apos;à ce que vous les repreniez.</translation>
    </message>
    <message>
        <source>C&amp;ontinue anyway</source>
        <translation>C&amp;ontinuer quand même</translation>
    </message>
    <message>
        <source>&amp;Download</source>
        <translation>&amp;Télécharger</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>&amp;Annuler</translation>
    </message>
    <message>
        <source>&amp;Not now</source>
        <translation>&amp;Pas maintenant</translation>
    </message>
    <message>
        <source>Files:</source>
        <translation>Fichiers :</translation>
    </message>
    <message>
        <source>Without an answer the update is put off in %1 s.</source>
        <translation>Sans réponse, la mise à jour est reportée dans %1 s.</translation>
    </message>
    <message>
        <source>It begins by itself in %1 s.</source>
        <translation>Il commence de lui-même dans %1 s.</translation>
    </message>
</context>
<context>
    <name>LaunchOptions</name>
    <message>
        <source>The launch command has a quotation mark without its counterpart: %1</source>
        <translation>Il manque un guillemet dans la commande de lancement : %1</translation>
    </message>
    <message>
        <source>The program of the launch command cannot be found: %1</source>
        <translation>Le programme de la commande de lancement est introuvable : %1</translation>
    </message>
    <message>
        <source>An environment variable has to be written as NAME=value: %1</source>
        <translation>Une variable d&apos;environnement doit s&apos;écrire NOM=valeur : %1</translation>
    </message>
    <message>
        <source>The launcher needs the environment variable %1 itself</source>
        <translation>Le lanceur a lui-même besoin de la variable d&apos;environnement %1</translation>
    </message>
</context>
<context>
    <name>LaunchOptionsDialog</name>
    <message>
        <source>Launch options</source>
        <translation>Options de lancement</translation>
    </message>
    <message>
        <source>&amp;Command in front of Wine:</source>
        <translation>&amp;Commande devant Wine :</translation>
    </message>
    <message>
        <source>For example &quot;gamemoderun&quot; or &quot;gamescope -f --&quot;. Leave it empty to start the game as usual.</source>
        <translation>Par exemple « gamemoderun » ou « gamescope -f -- ». Laissez vide pour lancer le jeu normalement.</translation>
    </message>
    <message>
        <source>&amp;Server:</source>
        <translation>&amp;Serveur :</translation>
    </message>
    <message>
        <source>&amp;Environment variables of its clients, one on each line:</source>
        <translation>Variables d&apos;&amp;environnement de ses clients, une par ligne :</translation>
    </message>
</context>
<context>
    <name>LogDialog</name>
    <message>
        <source>Log - Velkor Launcher</source>
        <translation>Journal - Velkor Launcher</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Copier</translation>
    </message>
    <message>
        <source>The selected lines, or all that are shown</source>
        <translation>Les lignes sélectionnées, ou toutes celles qui sont affichées</translation>
    </message>
    <message>
        <source>Everything</source>
        <translation>Tout</translation>
    </message>
    <message>
        <source>Notes and worse</source>
        <translation>Remarques et plus grave</translation>
    </message>
    <message>
        <source>Warnings and worse</source>
        <translation>Avertissements et plus grave</translation>
    </message>
    <message>
        <source>Errors</source>
        <translation>Erreurs</translation>
    </message>
    <message>
        <source>Level</source>
        <translation>Niveau</translation>
    </message>
    <message>
        <source>&amp;Show:</source>
        <translation>&amp;Afficher :</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Rechercher</translation>
    </message>
    <message>
        <source>Log</source>
        <translation>Journal</translation>
    </message>
    <message>
        <source>%1 of %2 lines</source>
        <translation>%1 lignes sur %2</translation>
    </message>
    <message>
        <source>The log file cannot be read: %1</source>
        <translation>Le fichier journal ne peut pas être lu : %1</translation>
    </message>
</context>
<context>
    <name>LogModel</name>
    <message>
        <source>%1 (Repeated %2 times)</source>
        <translation>%1 (répété %2 fois)</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Heure</translation>
    </message>
    <message>
        <source>Level</source>
        <translation>Niveau</translation>
    </message>
    <message>
        <source>Category</source>
        <translation>Catégorie</translation>
    </message>
    <message>
        <source>Message</source>
        <translation>Message</translation>
    </message>
    <message>
        <source>Process</source>
        <translation>Processus</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Velkor Launcher - version %1</source>
        <translation>Lanceur Velkor - version %1</translation>
    </message>
    <message>
        <source>&amp;Server list</source>
        <translation>Liste des &amp;serveurs</translation>
    </message>
    <message>
        <source>Server list - Velkor Launcher</source>
        <translation>Liste des serveurs - Lanceur Velkor</translation>
    </message>
    <message>
        <source>Se&amp;ttings...</source>
        <translation>&amp;Paramètres...</translation>
    </message>
    <message>
        <source>Shared &amp;Cache...</source>
        <translation>&amp;Cache partagé...</translation>
    </message>
    <message>
        <source>C&amp;lient Settings...</source>
        <translation>Paramètres du c&amp;lient...</translation>
    </message>
    <message>
        <source>Start LogLens</source>
        <translation>Ouvrir LogLens</translation>
    </message>
    <message>
        <source>&amp;Network diagnostics...</source>
        <translation>Diagnostic du &amp;réseau...</translation>
    </message>
    <message>
        <source>Show in File Browser</source>
        <translation>Montrer dans le gestionnaire de fichiers</translation>
    </message>
    <message>
        <source>Launcher logs</source>
        <translation>Journaux du lanceur</translation>
    </message>
    <message>
        <source>Shared cache</source>
        <translation>Cache partagé</translation>
    </message>
    <message>
        <source>&amp;Refresh</source>
        <translation>&amp;Actualiser</translation>
    </message>
    <message>
        <source>About...</source>
        <translation>À propos...</translation>
    </message>
    <message>
        <source>E&amp;xit</source>
        <translation>&amp;Quitter</translation>
    </message>
    <message>
        <source>%1 (%2 %)</source>
        <translation>%1 (%2 %)</translation>
    </message>
    <message>
        <source>The client for %1 is running</source>
        <translation>Le client de %1 est en cours d&apos;exécution</translation>
    </message>
    <message>
        <source>The client for %1 has crashed</source>
        <translation>Le client de %1 a planté</translation>
    </message>
    <message>
        <source>The client for %1 has ended with exit code %2</source>
        <translation>Le client de %1 s&apos;est terminé avec le code %2</translation>
    </message>
    <message>
        <source>About</source>
        <translation>À propos</translation>
    </message>
    <message>
        <source>Velkor Launcher</source>
        <translation>Lanceur Velkor</translation>
    </message>
    <message>
        <source>Version %1
Toolkit %2
Shared cache: %3</source>
        <translation>Version %1
Boîte à outils %2
Cache partagé : %3</translation>
    </message>
    <message>
        <source>Checking hosts</source>
        <translation>Vérification des serveurs</translation>
    </message>
    <message>
        <source>Connection error</source>
        <translation>Erreur de connexion</translation>
    </message>
    <message>
        <source>Could not connect to %1: %2</source>
        <translation>Connexion à %1 impossible : %2</translation>
    </message>
    <message>
        <source>Connection error: %1</source>
        <translation>Erreur de connexion : %1</translation>
    </message>
    <message>
        <source>%1 (and %2 more)</source>
        <translation>%1 (et %2 autres)</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Erreur</translation>
    </message>
    <message>
        <source>Cache folder does not exist and could not be created at {1}</source>
        <translation>Le dossier du cache n&apos;existe pas et n&apos;a pas pu être créé dans {1}</translation>
    </message>
    <message>
        <source>Checking Wine</source>
        <translation>Vérification de Wine</translation>
    </message>
    <message>
        <source>Wine could not be updated: %1</source>
        <translation>Wine n&apos;a pas pu être mis à jour : %1</translation>
    </message>
    <message>
        <source>%1 (at %2)</source>
        <translation>%1 (à %2)</translation>
    </message>
    <message>
        <source>Looking for updates</source>
        <translation>Recherche de mises à jour</translation>
    </message>
    <message>
        <source>Everything is up to date. Last checked at %1.</source>
        <translation>Tout est à jour. Dernière vérification à %1.</translation>
    </message>
    <message>
        <source>An update is running: please wait until it has ended</source>
        <translation>Une mise à jour est en cours : veuillez attendre qu&apos;elle soit terminée</translation>
    </message>
    <message>
        <source>Client Settings</source>
        <translation>Paramètres du client</translation>
    </message>
    <message>
        <source>You have settings profiles for the client. Do you want to copy them to another server?</source>
        <translation>Vous avez des profils de paramètres du client. Voulez-vous les copier sur un autre serveur ?</translation>
    </message>
    <message>
        <source>Downloads are paused.</source>
        <translation>Les téléchargements sont en pause.</translation>
    </message>
    <message>
        <source>Downloads wait until no client runs.</source>
        <translation>Les téléchargements attendent qu&apos;aucun client ne tourne.</translation>
    </message>
    <message>
        <source>Downloads go on.</source>
        <translation>Les téléchargements reprennent.</translation>
    </message>
    <message>
        <source>What is missing is taken from %1 where it is there.</source>
        <translation>Ce qui manque est pris dans %1 quand il s&apos;y trouve.</translation>
    </message>
    <message>
        <source>Files that need not be downloaded: %1 (%2)</source>
        <translation>Fichiers à ne pas télécharger : %1 (%2)</translation>
    </message>
</context>
<context>
    <name>MigrateSettingsGui</name>
    <message>
        <source>Client Settings</source>
        <translation>Paramètres du client</translation>
    </message>
    <message>
        <source>&amp;From</source>
        <translation>&amp;De</translation>
    </message>
    <message>
        <source>C&amp;opy &gt;</source>
        <translation>C&amp;opier &gt;</translation>
    </message>
    <message>
        <source>Copies the profile on the left to the server on the right</source>
        <translation>Copie le profil de gauche sur le serveur de droite</translation>
    </message>
    <message>
        <source>&amp;To</source>
        <translation>&amp;Vers</translation>
    </message>
    <message>
        <source>&amp;New...</source>
        <translation>&amp;Nouveau...</translation>
    </message>
    <message>
        <source>Makes a profile that starts as a copy of the one on the left</source>
        <translation>Crée un profil qui commence comme une copie de celui de gauche</translation>
    </message>
    <message>
        <source>&amp;Rename...</source>
        <translation>&amp;Renommer...</translation>
    </message>
    <message>
        <source>&amp;Delete...</source>
        <translation>&amp;Supprimer...</translation>
    </message>
    <message>
        <source>Profiles</source>
        <translation>Profils</translation>
    </message>
    <message>
        <source>Name of the profile:</source>
        <translation>Nom du profil :</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Copier</translation>
    </message>
    <message>
        <source>%1 from %2</source>
        <translation>%1 de %2</translation>
    </message>
    <message>
        <source>%1 has been copied to %2.</source>
        <translation>%1 a été copié sur %2.</translation>
    </message>
    <message>
        <source>New profile</source>
        <translation>Nouveau profil</translation>
    </message>
    <message>
        <source>%1 has been made.</source>
        <translation>%1 a été créé.</translation>
    </message>
    <message>
        <source>Rename</source>
        <translation>Renommer</translation>
    </message>
    <message>
        <source>%1 is called %2 now.</source>
        <translation>%1 s&apos;appelle maintenant %2.</translation>
    </message>
    <message>
        <source>Do you want to delete the profile %1 of %2? Its settings are lost then.</source>
        <translation>Voulez-vous supprimer le profil %1 de %2 ? Ses paramètres seront perdus.</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Supprimer</translation>
    </message>
    <message>
        <source>%1 has been deleted.</source>
        <translation>%1 a été supprimé.</translation>
    </message>
</context>
<context>
    <name>QueueProgress</name>
    <message>
        <source>%1 of %2 files (%3)</source>
        <translation>%1 fichiers sur %2 (%3)</translation>
    </message>
</context>
<context>
    <name>ReportBundle</name>
    <message>
        <source>The report could not be made: %1</source>
        <translation>Le rapport n&apos;a pas pu être créé : %1</translation>
    </message>
    <message>
        <source>%1 could not be written: %2</source>
        <translation>%1 n&apos;a pas pu être écrit : %2</translation>
    </message>
</context>
<context>
    <name>ReportDialog</name>
    <message>
        <source>Report for the support</source>
        <translation>Rapport pour l&apos;assistance</translation>
    </message>
    <message>
        <source>This is what the report will hold. Sign-in tokens, your name and your home folder are left out of it. Untick what you do not want to share. Nothing is sent: you save the report as a file.</source>
        <translation>Voici ce que contiendra le rapport. Les jetons de connexion, votre nom et votre dossier personnel en sont exclus. Décochez ce que vous ne voulez pas partager. Rien n&apos;est envoyé : vous enregistrez le rapport dans un fichier.</translation>
    </message>
    <message>
        <source>Parts of the report</source>
        <translation>Parties du rapport</translation>
    </message>
    <message>
        <source>Content of the part</source>
        <translation>Contenu de la partie</translation>
    </message>
    <message>
        <source>Looking at the network and the disk. This takes some seconds.</source>
        <translation>Examen du réseau et du disque. Cela prend quelques secondes.</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Progression</translation>
    </message>
    <message>
        <source>&amp;Save...</source>
        <translation>&amp;Enregistrer...</translation>
    </message>
    <message>
        <source>The report is ready to be saved.</source>
        <translation>Le rapport peut être enregistré.</translation>
    </message>
    <message>
        <source>Save the report</source>
        <translation>Enregistrer le rapport</translation>
    </message>
    <message>
        <source>Zip files (*.zip)</source>
        <translation>Fichiers zip (*.zip)</translation>
    </message>
    <message>
        <source>Saved as %1.</source>
        <translation>Enregistré sous %1.</translation>
    </message>
    <message>
        <source>Nothing has been chosen.</source>
        <translation>Rien n&apos;est sélectionné.</translation>
    </message>
</context>
<context>
    <name>ServerLine</name>
    <message>
        <source>Play on %1</source>
        <translation>Jouer sur %1</translation>
    </message>
    <message>
        <source>Progress of %1</source>
        <translation>Progression de %1</translation>
    </message>
    <message>
        <source>The client&apos;s settings profile</source>
        <translation>Le profil de paramètres du client</translation>
    </message>
    <message>
        <source>Settings profile of %1</source>
        <translation>Profil de paramètres de %1</translation>
    </message>
    <message>
        <source>Ready</source>
        <translation>Prêt</translation>
    </message>
    <message>
        <source>Status not verified</source>
        <translation>État non vérifié</translation>
    </message>
    <message>
        <source>Checking...</source>
        <translation>Vérification...</translation>
    </message>
</context>
<context>
    <name>ServerManager</name>
    <message>
        <source>Version info not available</source>
        <translation>Informations de version indisponibles</translation>
    </message>
    <message>
        <source>Ready</source>
        <translation>Prêt</translation>
    </message>
    <message>
        <source>Must be logged in to %1 to get the build</source>
        <translation>Il faut être connecté à %1 pour obtenir cette version</translation>
    </message>
    <message>
        <source>%1 client file-index not available</source>
        <translation>La liste des fichiers du client de %1 est indisponible</translation>
    </message>
    <message>
        <source>Authentication is required to download %1 client</source>
        <translation>Il faut s&apos;identifier pour télécharger le client de %1</translation>
    </message>
    <message>
        <source>Unknown error while trying to get %1 client file-index</source>
        <translation>Erreur inconnue lors de l&apos;obtention de la liste des fichiers du client de %1</translation>
    </message>
    <message>
        <source>Index not available</source>
        <translation>Liste indisponible</translation>
    </message>
    <message>
        <source>Copying files</source>
        <translation>Copie des fichiers</translation>
    </message>
    <message>
        <source>Cannot copy files for %1 while clients are running</source>
        <translation>Impossible de copier les fichiers de %1 tant que des clients sont ouverts</translation>
    </message>
    <message>
        <source>Error! See log for details</source>
        <translation>Erreur ! Voir le journal pour plus de détails</translation>
    </message>
    <message>
        <source>Not ready to play</source>
        <translation>Pas encore prêt à jouer</translation>
    </message>
    <message>
        <source>Could not copy files for %1</source>
        <translation>Les fichiers de %1 n&apos;ont pas pu être copiés</translation>
    </message>
    <message>
        <source>Client launch failure</source>
        <translation>Échec du lancement du client</translation>
    </message>
    <message>
        <source>Wine is being updated. Please wait until that is done.</source>
        <translation>Wine est en cours de mise à jour. Veuillez attendre qu&apos;elle soit terminée.</translation>
    </message>
    <message>
        <source>Could not find file %1</source>
        <translation>Le fichier %1 est introuvable</translation>
    </message>
</context>
<context>
    <name>Settings</name>
    <message>
        <source>Default</source>
        <translation>Par défaut</translation>
    </message>
    <message>
        <source>Release</source>
        <translation>Publique</translation>
    </message>
    <message>
        <source>Beta</source>
        <translation>Bêta</translation>
    </message>
    <message>
        <source>Development</source>
        <translation>Développement</translation>
    </message>
    <message>
        <source>The directory %1 that is set as the shared cache location does not exist and cannot be created. Do you want to revert to the default value (%2)?</source>
        <translation>Le dossier %1 défini pour le cache partagé n&apos;existe pas et ne peut pas être créé. Voulez-vous revenir à la valeur par défaut (%2) ?</translation>
    </message>
    <message>
        <source>Warning</source>
        <translation>Avertissement</translation>
    </message>
</context>
<context>
    <name>SettingsDialog</name>
    <message>
        <source>Latest</source>
        <translation>Dernière</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Paramètres</translation>
    </message>
    <message>
        <source>Launcher and clients</source>
        <translation>Lanceur et clients</translation>
    </message>
    <message>
        <source>&amp;Language:</source>
        <translation>&amp;Langue :</translation>
    </message>
    <message>
        <source>Language of the launcher; all of it changes at the next start</source>
        <translation>Langue du lanceur ; elle change entièrement au prochain démarrage</translation>
    </message>
    <message>
        <source>&amp;Version type:</source>
        <translation>Type de &amp;version :</translation>
    </message>
    <message>
        <source>Which releases of the launcher you get</source>
        <translation>Quelles versions du lanceur vous recevez</translation>
    </message>
    <message>
        <source>&amp;Download everything:</source>
        <translation>&amp;Tout télécharger :</translation>
    </message>
    <message>
        <source>Fetch all resources in advance instead of while you play</source>
        <translation>Télécharger toutes les ressources à l&apos;avance plutôt que pendant le jeu</translation>
    </message>
    <message>
        <source>&amp;Run clients with logging:</source>
        <translation>Clients avec &amp;journal :</translation>
    </message>
    <message>
        <source>Show the log live in LogLens while clients run</source>
        <translation>Montrer le journal en direct dans LogLens pendant que des clients sont ouverts</translation>
    </message>
    <message>
        <source>Run clients with D&amp;X9:</source>
        <translation>Clients avec D&amp;X9 :</translation>
    </message>
    <message>
        <source>For graphics hardware that has trouble with newer versions</source>
        <translation>Pour le matériel graphique qui supporte mal les versions récentes</translation>
    </message>
    <message>
        <source>Run clients with &amp;64 bit:</source>
        <translation>Clients en &amp;64 bits :</translation>
    </message>
    <message>
        <source>Start the client&apos;s 64-bit program</source>
        <translation>Démarrer le programme 64 bits du client</translation>
    </message>
    <message>
        <source>&amp;Minimize to tray on close:</source>
        <translation>&amp;Réduire dans la barre à la fermeture :</translation>
    </message>
    <message>
        <source>Closing the window leaves the launcher in the tray</source>
        <translation>Fermer la fenêtre laisse le lanceur dans la barre système</translation>
    </message>
    <message>
        <source>&amp;Ignore certification errors:</source>
        <translation>&amp;Ignorer les erreurs de certificat :</translation>
    </message>
    <message>
        <source>Go on where a server cannot prove who it is; only for networks that you know to be safe</source>
        <translation>Continuer même si un serveur ne peut pas prouver qui il est ; seulement sur des réseaux que vous savez sûrs</translation>
    </message>
    <message>
        <source>Use system configuration for &amp;proxy:</source>
        <translation>Utiliser le &amp;proxy du système :</translation>
    </message>
    <message>
        <source>Reach the network the way your system is set up to; takes effect at the next start</source>
        <translation>Accéder au réseau comme votre système est configuré ; prend effet au prochain démarrage</translation>
    </message>
    <message>
        <source>Enable hi&amp;gh DPI scaling:</source>
        <translation>Adapter aux écrans à &amp;haute résolution :</translation>
    </message>
    <message>
        <source>Larger windows on fine screens; takes effect at the next start</source>
        <translation>Fenêtres plus grandes sur les écrans fins ; prend effet au prochain démarrage</translation>
    </message>
    <message>
        <source>Enable hard&amp;ware rendering:</source>
        <translation>Dessiner avec la carte &amp;graphique :</translation>
    </message>
    <message>
        <source>Draw with the graphics hardware; takes effect at the next start</source>
        <translation>Dessiner avec le matériel graphique ; prend effet au prochain démarrage</translation>
    </message>
    <message>
        <source>&amp;Thread count for resource download in client</source>
        <translation>&amp;Fichiers simultanés dans le client</translation>
    </message>
    <message>
        <source>How many files the client fetches at a time</source>
        <translation>Combien de fichiers le client télécharge à la fois</translation>
    </message>
    <message>
        <source>Test &amp;Servers</source>
        <translation>&amp;Serveurs de test</translation>
    </message>
    <message>
        <source>Servers beside the main one that are kept up to date</source>
        <translation>Serveurs tenus à jour en plus du principal</translation>
    </message>
    <message>
        <source>Show the running l&amp;auncher at a second start:</source>
        <translation>Au second démarrage, montrer le l&amp;anceur ouvert :</translation>
    </message>
    <message>
        <source>Instead of opening another launcher beside it; takes effect at the next start</source>
        <translation>Au lieu d&apos;ouvrir un autre lanceur à côté ; prend effet au prochain démarrage</translation>
    </message>
    <message>
        <source>Wine options</source>
        <translation>Options de Wine</translation>
    </message>
    <message>
        <source>Use &amp;custom Wine</source>
        <translation>Utiliser un Wine &amp;personnel</translation>
    </message>
    <message>
        <source>Run clients with a Wine of your own instead of the one that comes with the game</source>
        <translation>Démarrer les clients avec votre propre Wine au lieu de celui fourni avec le jeu</translation>
    </message>
    <message>
        <source>Custom Wine pat&amp;h</source>
        <translation>C&amp;hemin de ce Wine</translation>
    </message>
    <message>
        <source>The program that starts your own Wine</source>
        <translation>Le programme qui démarre votre propre Wine</translation>
    </message>
    <message>
        <source>Use d&amp;ev versions</source>
        <translation>Versions de d&amp;éveloppement</translation>
    </message>
    <message>
        <source>Choose from versions that are still being tested</source>
        <translation>Choisir parmi des versions encore en test</translation>
    </message>
    <message>
        <source>Dev &amp;branch</source>
        <translation>&amp;Branche de développement</translation>
    </message>
    <message>
        <source>Only development versions of this branch</source>
        <translation>Seulement les versions de développement de cette branche</translation>
    </message>
    <message>
        <source>Wine versio&amp;n</source>
        <translation>Versio&amp;n de Wine</translation>
    </message>
    <message>
        <source>&quot;Latest&quot; follows what the game&apos;s makers recommend</source>
        <translation>« Dernière » suit ce que recommandent les auteurs du jeu</translation>
    </message>
    <message>
        <source>WINEDEB&amp;UG</source>
        <translation>WINEDEB&amp;UG</translation>
    </message>
    <message>
        <source>What Wine writes to the log, such as &quot;+loaddll,-all&quot;</source>
        <translation>Ce que Wine écrit dans le journal, par exemple « +loaddll,-all »</translation>
    </message>
    <message>
        <source>Retina m&amp;ode</source>
        <translation>M&amp;ode Retina</translation>
    </message>
    <message>
        <source>Let clients use every pixel of a fine screen</source>
        <translation>Laisser les clients utiliser chaque pixel d&apos;un écran fin</translation>
    </message>
    <message>
        <source>Auto detect</source>
        <translation>Automatique</translation>
    </message>
    <message>
        <source>Video memor&amp;y</source>
        <translation>&amp;Mémoire vidéo</translation>
    </message>
    <message>
        <source>Megabytes; what Wine tells clients that there is</source>
        <translation>Mégaoctets ; ce que Wine annonce aux clients</translation>
    </message>
    <message>
        <source>Looking for versions...</source>
        <translation>Recherche des versions...</translation>
    </message>
    <message>
        <source>The versions could not be loaded: %1</source>
        <translation>Les versions n&apos;ont pas pu être chargées : %1</translation>
    </message>
    <message>
        <source>The server offers no versions</source>
        <translation>Le serveur ne propose aucune version</translation>
    </message>
    <message>
        <source>Warning</source>
        <translation>Avertissement</translation>
    </message>
    <message>
        <source>A Development version of the launcher may be unstable. It is not recommended for users unless explicitly asked for by the developers. Are you sure want to select the Development version?</source>
        <translation>Une version de développement du lanceur peut être instable. Elle n&apos;est recommandée que si les développeurs l&apos;ont expressément demandée. Voulez-vous vraiment choisir la version de développement ?</translation>
    </message>
    <message>
        <source>If you choose to ignore certificate errors you will not be warned about potential security incidents in the future. It is not recommended unless you are sure you are on a safe network.

Are you sure you want to continue?</source>
        <translation>Si vous ignorez les erreurs de certificat, vous ne serez plus averti d&apos;éventuels incidents de sécurité. Ce n&apos;est recommandé que si vous êtes certain que votre réseau est sûr.

Voulez-vous vraiment continuer ?</translation>
    </message>
    <message>
        <source> MB/s</source>
        <translation> Mo/s</translation>
    </message>
    <message>
        <source>None</source>
        <translation>Aucune</translation>
    </message>
    <message>
        <source>Limit o&amp;f all downloads together:</source>
        <translation>&amp;Limite de tous les téléchargements ensemble :</translation>
    </message>
    <message>
        <source>0 is no limit</source>
        <translation>0 : aucune limite</translation>
    </message>
    <message>
        <source>&amp;Keep downloads until no client runs:</source>
        <translation>Télécharger seulement quand aucun client ne tourne (&amp;k) :</translation>
    </message>
    <message>
        <source>Nothing is downloaded while you play; it goes on afterwards</source>
        <translation>Rien n&apos;est téléchargé pendant que vous jouez ; cela reprend ensuite</translation>
    </message>
    <message>
        <source>Downloads are paused; the versions come when they go on.</source>
        <translation>Les téléchargements sont en pause ; les versions viendront à leur reprise.</translation>
    </message>
</context>
<context>
    <name>SimpleGui</name>
    <message>
        <source>Server list - Velkor Launcher</source>
        <translation>Liste des serveurs - Lanceur Velkor</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Fichier</translation>
    </message>
</context>
<context>
    <name>TitleBar</name>
    <message>
        <source>Menu</source>
        <translation>Menu</translation>
    </message>
    <message>
        <source>Minimize</source>
        <translation>Réduire</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Fermer</translation>
    </message>
</context>
<context>
    <name>ToolsMenu</name>
    <message>
        <source>&amp;Tools</source>
        <translation>&amp;Outils</translation>
    </message>
    <message>
        <source>Download &amp;limit</source>
        <translation>&amp;Limite de téléchargement</translation>
    </message>
    <message>
        <source>Use existing &amp;game files...</source>
        <translation>&amp;Utiliser des fichiers de jeu existants...</translation>
    </message>
    <message>
        <source>Launch &amp;options...</source>
        <translation>&amp;Options de lancement...</translation>
    </message>
    <message>
        <source>&amp;Report for the support...</source>
        <translation>&amp;Rapport pour l&apos;assistance...</translation>
    </message>
    <message>
        <source>Resume &amp;downloads</source>
        <translation>Reprendre les &amp;téléchargements</translation>
    </message>
    <message>
        <source>Pause &amp;downloads</source>
        <translation>Suspendre les &amp;téléchargements</translation>
    </message>
    <message>
        <source>%1 MB/s</source>
        <translation>%1 Mo/s</translation>
    </message>
    <message>
        <source>None</source>
        <translation>Aucune</translation>
    </message>
    <message>
        <source>Sho&amp;w the log...</source>
        <translation>Afficher le &amp;journal...</translation>
    </message>
</context>
<context>
    <name>TransferMeter</name>
    <message>
        <source>%1/s on average</source>
        <translation>%1/s en moyenne</translation>
    </message>
    <message>
        <source>%1, about %2 left</source>
        <translation>%1, encore %2 environ</translation>
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
        <translation>%1 : %2 % - %3</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1 : %2</translation>
    </message>
    <message>
        <source>Ready</source>
        <translation>Prêt</translation>
    </message>
    <message>
        <source>%1 is ready</source>
        <translation>%1 est prêt</translation>
    </message>
    <message>
        <source>The update has ended.</source>
        <translation>La mise à jour est terminée.</translation>
    </message>
    <message>
        <source>%1 could not be updated</source>
        <translation>%1 n&apos;a pas pu être mis à jour</translation>
    </message>
</context>
<context>
    <name>UpdateDialog</name>
    <message>
        <source>Version %1 of the launcher is available. This launcher was installed by your system: please update it with the system&apos;s package manager.</source>
        <translation>La version %1 du lanceur est disponible. Ce lanceur a été installé par votre système : veuillez le mettre à jour avec le gestionnaire de paquets.</translation>
    </message>
    <message>
        <source>Velkor Launcher Update</source>
        <translation>Mise à jour du lanceur Velkor</translation>
    </message>
    <message>
        <source>Downloading new version %1</source>
        <translation>Téléchargement de la nouvelle version %1</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Progression</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Retry</source>
        <translation>Réessayer</translation>
    </message>
    <message>
        <source> Update will be applied automatically in %2 seconds.</source>
        <translation> La mise à jour sera appliquée automatiquement dans %2 secondes.</translation>
    </message>
    <message>
        <source>The launcher goes on without it in %1 seconds.</source>
        <translation>Le lanceur continue sans elle dans %1 secondes.</translation>
    </message>
    <message>
        <source>Downloading binary index for new version %1</source>
        <translation>Téléchargement de la liste des fichiers de la nouvelle version %1</translation>
    </message>
    <message>
        <source>The list of the new version&apos;s files could not be downloaded.</source>
        <translation>La liste des fichiers de la nouvelle version n&apos;a pas pu être téléchargée.</translation>
    </message>
    <message>
        <source>The list of the new version&apos;s files could not be saved.</source>
        <translation>La liste des fichiers de la nouvelle version n&apos;a pas pu être enregistrée.</translation>
    </message>
    <message>
        <source>Downloading new launcher binaries</source>
        <translation>Téléchargement des nouveaux programmes du lanceur</translation>
    </message>
    <message>
        <source>Downloading new launcher binaries (%1%)</source>
        <translation>Téléchargement des nouveaux programmes du lanceur (%1 %)</translation>
    </message>
    <message>
        <source>The new version could not be downloaded.</source>
        <translation>La nouvelle version n&apos;a pas pu être téléchargée.</translation>
    </message>
    <message>
        <source>The new version could not be downloaded: %1</source>
        <translation>La nouvelle version n&apos;a pas pu être téléchargée : %1</translation>
    </message>
    <message>
        <source>New version available</source>
        <translation>Nouvelle version disponible</translation>
    </message>
    <message>
        <source>The Velkor launcher has downloaded an update (version %1). Press OK to apply the update or Cancel to stay on the current version.</source>
        <translation>Le lanceur Velkor a téléchargé une mise à jour (version %1). Appuyez sur OK pour l&apos;appliquer ou sur Annuler pour garder la version actuelle.</translation>
    </message>
    <message>
        <source>The new version cannot be installed: %1</source>
        <translation>La nouvelle version ne peut pas être installée : %1</translation>
    </message>
</context>
<context>
    <name>UpdaterStarter</name>
    <message>
        <source>it has no updater.</source>
        <translation>elle n&apos;a pas de programme de mise à jour.</translation>
    </message>
    <message>
        <source>the updater could not be copied.</source>
        <translation>le programme de mise à jour n&apos;a pas pu être copié.</translation>
    </message>
    <message>
        <source>the updater could not be started.</source>
        <translation>le programme de mise à jour n&apos;a pas pu être démarré.</translation>
    </message>
</context>
<context>
    <name>Verifier</name>
    <message>
        <source>is a link</source>
        <translation>est un lien</translation>
    </message>
    <message>
        <source>is a folder</source>
        <translation>est un dossier</translation>
    </message>
    <message>
        <source>is no regular file</source>
        <translation>n&apos;est pas un fichier ordinaire</translation>
    </message>
    <message>
        <source>is empty</source>
        <translation>est vide</translation>
    </message>
    <message>
        <source>is too short</source>
        <translation>est trop court</translation>
    </message>
    <message>
        <source>is too long</source>
        <translation>est trop long</translation>
    </message>
    <message>
        <source>cannot be read</source>
        <translation>ne peut pas être lu</translation>
    </message>
    <message>
        <source>has the wrong content</source>
        <translation>a un contenu erroné</translation>
    </message>
    <message>
        <source>Looking at the cache</source>
        <translation>Examen du cache</translation>
    </message>
    <message>
        <source>%1 of %2 files (%3 of %4), %5</source>
        <translation>%1 fichiers sur %2 (%3 sur %4), %5</translation>
    </message>
</context>
<context>
    <name>VerifierGui</name>
    <message>
        <source>Shared Cache</source>
        <translation>Cache partagé</translation>
    </message>
    <message>
        <source>&amp;Remove files that nothing needs</source>
        <translation>&amp;Supprimer les fichiers inutiles</translation>
    </message>
    <message>
        <source>Files of builds and servers that are not kept up to date any more</source>
        <translation>Fichiers de versions et de serveurs qui ne sont plus tenus à jour</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Progression</translation>
    </message>
    <message>
        <source>Verifying reads every file and compares it with what the game&apos;s makers have published.</source>
        <translation>La vérification lit chaque fichier et le compare à ce que les auteurs du jeu ont publié.</translation>
    </message>
    <message>
        <source>Results</source>
        <translation>Résultats</translation>
    </message>
    <message>
        <source>What is found is listed here.</source>
        <translation>Ce qui est trouvé s&apos;affiche ici.</translation>
    </message>
    <message>
        <source>&amp;Verify</source>
        <translation>&amp;Vérifier</translation>
    </message>
    <message>
        <source>&amp;Move...</source>
        <translation>&amp;Déplacer...</translation>
    </message>
    <message>
        <source>Moves the cache to another folder, such as one on a larger disk</source>
        <translation>Déplace le cache dans un autre dossier, par exemple sur un disque plus grand</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>&amp;Fermer</translation>
    </message>
    <message>
        <source>The cache is in %1</source>
        <translation>Le cache est dans %1</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>&amp;Annuler</translation>
    </message>
    <message>
        <source>Reading the indexes</source>
        <translation>Lecture des listes</translation>
    </message>
    <message>
        <source>All files that were checked are as they should be.</source>
        <translation>Tous les fichiers vérifiés sont corrects.</translation>
    </message>
    <message>
        <source>Damaged files were found. The next refresh fetches them again.</source>
        <translation>Des fichiers endommagés ont été trouvés. La prochaine mise à jour les téléchargera de nouveau.</translation>
    </message>
    <message>
        <source>%1 is not needed</source>
        <translation>%1 est inutile</translation>
    </message>
    <message>
        <source>and %1 more</source>
        <translation>et %1 autres</translation>
    </message>
    <message>
        <source>Where should the cache go?</source>
        <translation>Où mettre le cache ?</translation>
    </message>
    <message>
        <source>The cache cannot be moved while clients are running</source>
        <translation>Le cache ne peut pas être déplacé tant que des clients sont ouverts</translation>
    </message>
    <message>
        <source>Moving the cache</source>
        <translation>Déplacement du cache</translation>
    </message>
    <message>
        <source>The cache has been moved.</source>
        <translation>Le cache a été déplacé.</translation>
    </message>
    <message>
        <source>The cache is where it was.</source>
        <translation>Le cache est resté où il était.</translation>
    </message>
    <message>
        <source>The cache is where it was: %1</source>
        <translation>Le cache est resté où il était : %1</translation>
    </message>
    <message>
        <source>Cancelling...</source>
        <translation>Annulation...</translation>
    </message>
</context>
<context>
    <name>WebGui</name>
    <message>
        <source>Couldn&apos;t get GUI version info</source>
        <translation>La version de l&apos;interface n&apos;a pas pu être obtenue</translation>
    </message>
    <message>
        <source>See logs for details</source>
        <translation>Voir les journaux pour plus de détails</translation>
    </message>
    <message>
        <source>Can&apos;t get GUI version info when offline</source>
        <translation>Hors ligne, la version de l&apos;interface ne peut pas être obtenue</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Erreur</translation>
    </message>
    <message>
        <source>Couldn&apos;t establish gui version</source>
        <translation>La version de l&apos;interface n&apos;a pas pu être déterminée</translation>
    </message>
    <message>
        <source>Checking GUI version...</source>
        <translation>Vérification de la version de l&apos;interface...</translation>
    </message>
    <message>
        <source>Please wait</source>
        <translation>Veuillez patienter</translation>
    </message>
    <message>
        <source>Couldn&apos;t load the page</source>
        <translation>La page n&apos;a pas pu être chargée</translation>
    </message>
    <message>
        <source>The page has ended unexpectedly several times. It is loaded again soon.</source>
        <translation>La page s&apos;est arrêtée plusieurs fois de façon inattendue. Elle sera bientôt rechargée.</translation>
    </message>
</context>
<context>
    <name>WineManager</name>
    <message>
        <source>Removing the old version</source>
        <translation>Suppression de l&apos;ancienne version</translation>
    </message>
    <message>
        <source>Wine: %1</source>
        <translation>Wine : %1</translation>
    </message>
    <message>
        <source>Preparing Wine...</source>
        <translation>Préparation de Wine...</translation>
    </message>
</context>
</TS>
