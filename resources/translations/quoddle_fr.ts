<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr" sourcelanguage="en">
<context>
    <name>Appcast</name>
    <message>
        <source>It is no list of versions.</source>
        <translation>Ce n’est pas une liste de versions.</translation>
    </message>
    <message>
        <source>The list of versions cannot be read: line %1: %2</source>
        <translation>La liste des versions est illisible&#xa0;: ligne %1&#xa0;:&#xa0;%2</translation>
    </message>
    <message>
        <source>The list of versions is too long.</source>
        <translation>La liste des versions est trop longue.</translation>
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
        <translation>Choisissez l’applet Kestrel à tester</translation>
    </message>
</context>
<context>
    <name>BundleArchive</name>
    <message>
        <source>There is no applet in the archive.</source>
        <translation>L’archive ne contient aucun applet.</translation>
    </message>
    <message>
        <source>The archive cannot be unpacked: %1</source>
        <translation>L’archive ne peut pas être extraite&#xa0;: %1</translation>
    </message>
    <message>
        <source>it is damaged</source>
        <translation>elle est endommagée</translation>
    </message>
    <message>
        <source>The archive is not to be trusted: %1</source>
        <translation>L’archive n’est pas digne de confiance&#xa0;: %1</translation>
    </message>
    <message>
        <source>There are too many files in the archive.</source>
        <translation>L’archive contient trop de fichiers.</translation>
    </message>
    <message>
        <source>There is more than one applet in the archive.</source>
        <translation>L’archive contient plusieurs applets.</translation>
    </message>
    <message>
        <source>What is in the archive is too large.</source>
        <translation>Le contenu de l’archive est trop volumineux.</translation>
    </message>
</context>
<context>
    <name>ChooseApplicationPanel</name>
    <message>
        <source>Choose Application</source>
        <translation>Choisir une application</translation>
    </message>
    <message>
        <source>Select an application:</source>
        <translation>Sélectionnez une application&#xa0;:</translation>
    </message>
    <message>
        <source>Applications</source>
        <translation>Applications</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>Choose</source>
        <translation>Choisir</translation>
    </message>
</context>
<context>
    <name>ChooseColor</name>
    <message>
        <source>Choose a Color</source>
        <translation>Choisir une couleur</translation>
    </message>
</context>
<context>
    <name>ChooseFromListViewController</name>
    <message>
        <source>Please make a choice:</source>
        <translation>Veuillez faire un choix&#xa0;:</translation>
    </message>
    <message>
        <source>Choices</source>
        <translation>Choix</translation>
    </message>
</context>
<context>
    <name>ChooseURLPanel</name>
    <message>
        <source>Choose a URL</source>
        <translation>Choisir une URL</translation>
    </message>
    <message>
        <source>URL:</source>
        <translation>URL&#xa0;:</translation>
    </message>
    <message>
        <source>URL</source>
        <translation>URL</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
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
        <translation>Annuler</translation>
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
        <translation>Réponse</translation>
    </message>
    <message>
        <source>Hidden answer</source>
        <translation>Réponse masquée</translation>
    </message>
</context>
<context>
    <name>Download</name>
    <message>
        <source>The server did not answer in time.</source>
        <translation>Le serveur n’a pas répondu à temps.</translation>
    </message>
    <message>
        <source>The download took too long.</source>
        <translation>Le téléchargement a pris trop de temps.</translation>
    </message>
    <message>
        <source>Nothing is fetched from %1: it is no https address.</source>
        <translation>Rien n’est téléchargé depuis %1&#xa0;: ce n’est pas une adresse https.</translation>
    </message>
    <message>
        <source>The server sends more than was announced.</source>
        <translation>Le serveur envoie plus que ce qui était annoncé.</translation>
    </message>
    <message>
        <source>The server answered with the status %1.</source>
        <translation>Le serveur a répondu avec l’état %1.</translation>
    </message>
</context>
<context>
    <name>FileBrowser</name>
    <message>
        <source>Back</source>
        <translation>Précédent</translation>
    </message>
    <message>
        <source>Forward</source>
        <translation>Suivant</translation>
    </message>
    <message>
        <source>Enclosing Folder</source>
        <translation>Dossier parent</translation>
    </message>
    <message>
        <source>Location</source>
        <translation>Emplacement</translation>
    </message>
    <message>
        <source>New Folder</source>
        <translation>Nouveau dossier</translation>
    </message>
    <message>
        <source>Places</source>
        <translation>Emplacements</translation>
    </message>
    <message>
        <source>Files</source>
        <translation>Fichiers</translation>
    </message>
</context>
<context>
    <name>FileFacts</name>
    <message>
        <source>Application</source>
        <translation>Application</translation>
    </message>
    <message>
        <source>Rich text document with attachments</source>
        <translation>Document de texte enrichi avec pièces jointes</translation>
    </message>
    <message>
        <source>Package</source>
        <translation>Paquet</translation>
    </message>
    <message>
        <source>Folder</source>
        <translation>Dossier</translation>
    </message>
    <message>
        <source>Special file</source>
        <translation>Fichier spécial</translation>
    </message>
    <message>
        <source>Document</source>
        <translation>Document</translation>
    </message>
    <message>
        <source>1 byte</source>
        <translation>1 octet</translation>
    </message>
    <message>
        <source>More than %1 items</source>
        <translation>Plus de %1 éléments</translation>
    </message>
    <message>
        <source>1 item</source>
        <translation>1 élément</translation>
    </message>
    <message>
        <source>Created %1</source>
        <translation>Créé&#xa0;: %1</translation>
    </message>
    <message>
        <source>Modified %1</source>
        <translation>Modifié&#xa0;: %1</translation>
    </message>
    <message numerus="yes">
        <source>%Ln items</source>
        <translation>
            <numerusform>%Ln élément</numerusform>
            <numerusform>%Ln éléments</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>FilePortal</name>
    <message>
        <source>Files that can be chosen</source>
        <translation>Fichiers pouvant être choisis</translation>
    </message>
</context>
<context>
    <name>NSOpenPanel</name>
    <message>
        <source>Open</source>
        <translation>Ouvrir</translation>
    </message>
    <message>
        <source>Choose a Folder</source>
        <translation>Choisir un dossier</translation>
    </message>
    <message>
        <source>Choose</source>
        <translation>Choisir</translation>
    </message>
    <message>
        <source>“%1” cannot be found.</source>
        <translation>«&#xa0;%1&#xa0;» est introuvable.</translation>
    </message>
    <message>
        <source>“%1” is not of a kind that can be chosen here.</source>
        <translation>«&#xa0;%1&#xa0;» n’est pas d’un type qui peut être choisi ici.</translation>
    </message>
</context>
<context>
    <name>NSSavePanel</name>
    <message>
        <source>&amp;Name:</source>
        <translation>&amp;Nom&#xa0;:</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Nom</translation>
    </message>
    <message>
        <source>A file cannot be called “%1”.</source>
        <translation>Un fichier ne peut pas s’appeler «&#xa0;%1&#xa0;».</translation>
    </message>
    <message>
        <source>The name is too long.</source>
        <translation>Le nom est trop long.</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>Untitled</source>
        <translation>Sans titre</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Enregistrer</translation>
    </message>
    <message>
        <source>The folder “%1” cannot be found.</source>
        <translation>Le dossier «&#xa0;%1&#xa0;» est introuvable.</translation>
    </message>
    <message>
        <source>You are not allowed to save in “%1”.</source>
        <translation>Vous n’êtes pas autorisé à enregistrer dans «&#xa0;%1&#xa0;».</translation>
    </message>
    <message>
        <source>“%1” already exists. Do you want to replace it?</source>
        <translation>«&#xa0;%1&#xa0;» existe déjà. Voulez-vous le remplacer&#xa0;?</translation>
    </message>
    <message>
        <source>Replacing it overwrites what it contains.</source>
        <translation>Son contenu actuel sera écrasé.</translation>
    </message>
    <message>
        <source>Replace</source>
        <translation>Remplacer</translation>
    </message>
</context>
<context>
    <name>PackedApplets</name>
    <message>
        <source>“%1” cannot be read: %2</source>
        <translation>« %1 » ne peut pas être lu : %2</translation>
    </message>
    <message>
        <source>its name is not UTF-8; rename it</source>
        <translation>son nom n’est pas en UTF-8 ; renommez-le</translation>
    </message>
    <message>
        <source>it is too large</source>
        <translation>il est trop volumineux</translation>
    </message>
    <message>
        <source>there is no applet in it</source>
        <translation>il ne contient pas d’applet</translation>
    </message>
    <message>
        <source>The folder %1 cannot be made.</source>
        <translation>Le dossier %1 ne peut pas être créé.</translation>
    </message>
</context>
<context>
    <name>Places</name>
    <message>
        <source>Home</source>
        <translation>Dossier personnel</translation>
    </message>
    <message>
        <source>Desktop</source>
        <translation>Bureau</translation>
    </message>
    <message>
        <source>Documents</source>
        <translation>Documents</translation>
    </message>
    <message>
        <source>Downloads</source>
        <translation>Téléchargements</translation>
    </message>
    <message>
        <source>Music</source>
        <translation>Musique</translation>
    </message>
    <message>
        <source>Pictures</source>
        <translation>Images</translation>
    </message>
    <message>
        <source>Videos</source>
        <translation>Vidéos</translation>
    </message>
    <message>
        <source>Computer</source>
        <translation>Ordinateur</translation>
    </message>
</context>
<context>
    <name>PreviewContents</name>
    <message>
        <source>The file could not be read.</source>
        <translation>Le fichier n’a pas pu être lu.</translation>
    </message>
    <message>
        <source>The text has too many formats to be shown.</source>
        <translation>Le texte contient trop de mises en forme pour être affiché.</translation>
    </message>
    <message>
        <source>The file is not there any more.</source>
        <translation>Le fichier n’existe plus.</translation>
    </message>
</context>
<context>
    <name>ProgressViewController</name>
    <message>
        <source>Progress</source>
        <translation>Progression</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Arrêter</translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message>
        <source>Mode</source>
        <translation>Mode</translation>
    </message>
    <message>
        <source>Drop files</source>
        <translation>Déposer des fichiers</translation>
    </message>
    <message>
        <source>Find files</source>
        <translation>Rechercher des fichiers</translation>
    </message>
</context>
<context>
    <name>ScriptOpening</name>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>Run</source>
        <translation>Exécuter</translation>
    </message>
    <message>
        <source>Do you want to run the script “%1”?

A script can do whatever you can do, with all of your files. Run it only if you know where it comes from.</source>
        <translation>Voulez-vous exécuter le script « %1 » ?

Un script peut faire tout ce que vous pouvez faire, avec tous vos fichiers. Ne l’exécutez que si vous savez d’où il vient.</translation>
    </message>
    <message>
        <source>Run Script</source>
        <translation>Exécuter le script</translation>
    </message>
    <message>
        <source>“%1” could not finish.</source>
        <translation>« %1 » n’a pas pu se terminer.</translation>
    </message>
    <message>
        <source>“%1” could not be opened.</source>
        <translation>« %1 » n’a pas pu être ouvert.</translation>
    </message>
    <message>
        <source>Do you want to run the applet “%1”?

You have not opened it before. An applet can do whatever you can do, with all of your files. Run it only if you know where it comes from.</source>
        <translation>Voulez-vous exécuter l’applet « %1 » ?

Vous ne l’avez encore jamais ouvert. Un applet peut faire tout ce que vous pouvez faire, avec tous vos fichiers. Ne l’exécutez que si vous savez d’où il vient.</translation>
    </message>
    <message>
        <source>Run Applet</source>
        <translation>Exécuter l’applet</translation>
    </message>
</context>
<context>
    <name>SpotlightResultsCell</name>
    <message>
        <source>Name: %@.
Path: %@</source>
        <translation>Nom&#xa0;: %@.
Chemin&#xa0;: %@</translation>
    </message>
</context>
<context>
    <name>SpotlightViewController</name>
    <message>
        <source>Picture</source>
        <translation>Image</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Recherche</translation>
    </message>
    <message>
        <source>Name of a file</source>
        <translation>Nom d’un fichier</translation>
    </message>
    <message>
        <source>Results</source>
        <translation>Résultats</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Quitter</translation>
    </message>
    <message>
        <source>Searching</source>
        <translation>Recherche en cours</translation>
    </message>
    <message>
        <source>Quick Look</source>
        <translation>Aperçu</translation>
    </message>
    <message>
        <source>Look at the selected files (space in the list)</source>
        <translation>Voir les fichiers sélectionnés (espace dans la liste)</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Ouvrir</translation>
    </message>
</context>
<context>
    <name>StartupViewController</name>
    <message>
        <source>Description</source>
        <translation>Description</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Quitter</translation>
    </message>
    <message>
        <source>Run</source>
        <translation>Exécuter</translation>
    </message>
</context>
<context>
    <name>UpdateFetcher</name>
    <message>
        <source>The program quoddle-fetch is missing.</source>
        <translation>Le programme quoddle-fetch est manquant.</translation>
    </message>
    <message>
        <source>The download was broken off.</source>
        <translation>Le téléchargement a été interrompu.</translation>
    </message>
</context>
<context>
    <name>UpdateInstallation</name>
    <message>
        <source>There is nothing to download in the list of versions.</source>
        <translation>La liste des versions ne contient rien à télécharger.</translation>
    </message>
    <message>
        <source>The applet has no key to tell by whether a download comes from its maker.</source>
        <translation>L’applet n’a pas de clé permettant de vérifier qu’un téléchargement provient de son auteur.</translation>
    </message>
    <message>
        <source>Its maker has not signed it.</source>
        <translation>Son auteur ne l’a pas signée.</translation>
    </message>
    <message>
        <source>The list of versions does not say how large it is.</source>
        <translation>La liste des versions n’indique pas sa taille.</translation>
    </message>
    <message>
        <source>The applet belongs to a software package, which is updated with the system.</source>
        <translation>L’applet fait partie d’un paquet logiciel, mis à jour avec le système.</translation>
    </message>
    <message>
        <source>You may not change the folder that the applet is in.</source>
        <translation>Vous n’êtes pas autorisé à modifier le dossier qui contient l’applet.</translation>
    </message>
    <message>
        <source>What was downloaded is another applet.</source>
        <translation>Ce qui a été téléchargé est un autre applet.</translation>
    </message>
    <message>
        <source>What was downloaded is another version.</source>
        <translation>Ce qui a été téléchargé est une autre version.</translation>
    </message>
    <message>
        <source>What was downloaded has no script.</source>
        <translation>L’applet téléchargé n’a pas de script.</translation>
    </message>
</context>
<context>
    <name>UpdatePanel</name>
    <message>
        <source>Notes about this version</source>
        <translation>Notes sur cette version</translation>
    </message>
    <message>
        <source>Skip This Version</source>
        <translation>Ignorer cette version</translation>
    </message>
    <message>
        <source>Remind Me Later</source>
        <translation>Me le rappeler plus tard</translation>
    </message>
    <message>
        <source>Open Page</source>
        <translation>Ouvrir la page</translation>
    </message>
    <message>
        <source>Install Update</source>
        <translation>Installer la mise à jour</translation>
    </message>
</context>
<context>
    <name>quoddle-fetch</name>
    <message>
        <source>The applet&apos;s own key is damaged.</source>
        <translation>La clé de l’applet est endommagée.</translation>
    </message>
    <message>
        <source>What was downloaded cannot be read.</source>
        <translation>Le fichier téléchargé est illisible.</translation>
    </message>
    <message>
        <source>The signature is wrong: what was downloaded does not come from the applet&apos;s maker.</source>
        <translation>La signature est incorrecte&#xa0;: le téléchargement ne provient pas de l’auteur de l’applet.</translation>
    </message>
    <message>
        <source>The download is shorter than was announced.</source>
        <translation>Le téléchargement est plus court qu’annoncé.</translation>
    </message>
    <message>
        <source>There is no folder to unpack the archive in.</source>
        <translation>Il n’y a pas de dossier où extraire l’archive.</translation>
    </message>
    <message>
        <source>What was packed cannot be read.</source>
        <translation>Ce qui a été empaqueté ne peut pas être lu.</translation>
    </message>
    <message>
        <source>The file has changed meanwhile. Try again.</source>
        <translation>Le fichier a changé entre-temps. Réessayez.</translation>
    </message>
</context>
<context>
    <name>quoddle::CardView</name>
    <message>
        <source>Information on %1</source>
        <translation>Informations sur %1</translation>
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
        <translation>Annuler</translation>
    </message>
</context>
<context>
    <name>quoddle::ChooseURLPanel</name>
    <message>
        <source>No addresses are known</source>
        <translation>Aucune adresse connue</translation>
    </message>
</context>
<context>
    <name>quoddle::DescriptionView</name>
    <message>
        <source>The description is not shown: it is larger than %1.</source>
        <translation>La description n’est pas affichée&#xa0;: elle dépasse %1.</translation>
    </message>
    <message>
        <source>The description is not shown: it is too long or has too many formats.</source>
        <translation>La description n’est pas affichée&#xa0;: elle est trop longue ou contient trop de mises en forme.</translation>
    </message>
</context>
<context>
    <name>quoddle::DirectoryModel</name>
    <message>
        <source>1 byte</source>
        <translation>1 octet</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Nom</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Taille</translation>
    </message>
    <message>
        <source>Modified</source>
        <translation>Modifié</translation>
    </message>
</context>
<context>
    <name>quoddle::DropFilesView</name>
    <message>
        <source>Drop zone</source>
        <translation>Zone de dépôt</translation>
    </message>
    <message>
        <source>Picture</source>
        <translation>Image</translation>
    </message>
    <message>
        <source>Drop files here</source>
        <translation>Déposez les fichiers ici</translation>
    </message>
</context>
<context>
    <name>quoddle::FileBrowser</name>
    <message>
        <source>New Folder</source>
        <translation>Nouveau dossier</translation>
    </message>
    <message>
        <source>Name of the new folder:</source>
        <translation>Nom du nouveau dossier&#xa0;:</translation>
    </message>
    <message>
        <source>Create</source>
        <translation>Créer</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>“%1” is there already.</source>
        <translation>«&#xa0;%1&#xa0;» existe déjà.</translation>
    </message>
    <message>
        <source>The folder “%1” could not be created.</source>
        <translation>Le dossier «&#xa0;%1&#xa0;» n’a pas pu être créé.</translation>
    </message>
    <message>
        <source>Reading…</source>
        <translation>Lecture…</translation>
    </message>
    <message>
        <source>You are not allowed to see what is in this folder.</source>
        <translation>Vous n’êtes pas autorisé à voir le contenu de ce dossier.</translation>
    </message>
    <message>
        <source>This folder cannot be found.</source>
        <translation>Ce dossier est introuvable.</translation>
    </message>
    <message>
        <source>Nothing here can be chosen.</source>
        <translation>Rien ne peut être choisi ici.</translation>
    </message>
    <message>
        <source>This folder is empty.</source>
        <translation>Ce dossier est vide.</translation>
    </message>
</context>
<context>
    <name>quoddle::HookStopPanel</name>
    <message>
        <source>“%1” is waiting for an answer from its script.</source>
        <translation>«&#xa0;%1&#xa0;» attend une réponse de son script.</translation>
    </message>
    <message>
        <source>Waiting for the script</source>
        <translation>En attente du script</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Arrêter</translation>
    </message>
</context>
<context>
    <name>quoddle::JudgingView</name>
    <message>
        <source>Checking the files</source>
        <translation>Vérification des fichiers</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Arrêter</translation>
    </message>
</context>
<context>
    <name>quoddle::NSToolbar</name>
    <message>
        <source>Toolbar</source>
        <translation>Barre d’outils</translation>
    </message>
</context>
<context>
    <name>quoddle::PagesView</name>
    <message>
        <source>Pages</source>
        <translation>Pages</translation>
    </message>
    <message>
        <source>Page %1</source>
        <translation>Page %1</translation>
    </message>
</context>
<context>
    <name>quoddle::PictureView</name>
    <message>
        <source>Picture</source>
        <translation>Image</translation>
    </message>
</context>
<context>
    <name>quoddle::PreviewView</name>
    <message>
        <source>Text</source>
        <translation>Texte</translation>
    </message>
</context>
<context>
    <name>quoddle::ProgressViewController</name>
    <message>
        <source>%d%% completed</source>
        <translation>%d&#xa0;%% effectués</translation>
    </message>
    <message>
        <source>%@ of %@</source>
        <translation>%@ sur %@</translation>
    </message>
</context>
<context>
    <name>quoddle::PromptView</name>
    <message>
        <source>Prompt</source>
        <translation>Invite</translation>
    </message>
</context>
<context>
    <name>quoddle::QLPreviewPanel</name>
    <message>
        <source>Preview</source>
        <translation>Aperçu</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Fermer</translation>
    </message>
    <message>
        <source>Previous</source>
        <translation>Précédent</translation>
    </message>
    <message>
        <source>Next</source>
        <translation>Suivant</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Ouvrir</translation>
    </message>
    <message>
        <source>%1 (%2 of %3)</source>
        <translation>%1 (%2 sur&#xa0;%3)</translation>
    </message>
    <message>
        <source>Open with “%1”</source>
        <translation>Ouvrir avec «&#xa0;%1&#xa0;»</translation>
    </message>
    <message>
        <source>Nothing is selected.</source>
        <translation>Rien n’est sélectionné.</translation>
    </message>
    <message>
        <source>Only the beginning of the text is shown.</source>
        <translation>Seul le début du texte est affiché.</translation>
    </message>
    <message>
        <source>It is too large to be shown here.</source>
        <translation>Le fichier est trop volumineux pour être affiché ici.</translation>
    </message>
    <message>
        <source>Its pages cannot be shown.</source>
        <translation>Ses pages ne peuvent pas être affichées.</translation>
    </message>
    <message>
        <source>The picture cannot be shown.</source>
        <translation>L’image ne peut pas être affichée.</translation>
    </message>
    <message>
        <source>Only the first pages are shown.</source>
        <translation>Seules les premières pages sont affichées.</translation>
    </message>
</context>
<context>
    <name>quoddle::SUUpdater</name>
    <message>
        <source>Should %1 look for updates by itself?</source>
        <translation>%1 doit-il rechercher lui-même les mises à jour&#xa0;?</translation>
    </message>
    <message>
        <source>You can look for them at any time with “Check for Updates…” in the menu.</source>
        <translation>Vous pouvez les rechercher à tout moment avec «&#xa0;Rechercher les mises à jour…&#xa0;» dans le menu.</translation>
    </message>
    <message>
        <source>Check Automatically</source>
        <translation>Rechercher automatiquement</translation>
    </message>
    <message>
        <source>Don’t Check</source>
        <translation>Ne pas rechercher</translation>
    </message>
    <message>
        <source>Looking for updates…</source>
        <translation>Recherche de mises à jour…</translation>
    </message>
    <message>
        <source>Preparing version %1…</source>
        <translation>Préparation de la version %1…</translation>
    </message>
    <message>
        <source>%1 does not look for updates now.</source>
        <translation>%1 ne recherche pas de mises à jour pour le moment.</translation>
    </message>
    <message>
        <source>Try again later.</source>
        <translation>Réessayez plus tard.</translation>
    </message>
    <message>
        <source>%1 cannot look for updates.</source>
        <translation>%1 ne peut pas rechercher de mises à jour.</translation>
    </message>
    <message>
        <source>The address in its SUFeedURL is none.</source>
        <translation>L’adresse dans son SUFeedURL n’est pas valide.</translation>
    </message>
    <message>
        <source>It does not say which version it is.</source>
        <translation>Il n’indique pas sa version.</translation>
    </message>
    <message>
        <source>%1 could not look for updates.</source>
        <translation>%1 n’a pas pu rechercher de mises à jour.</translation>
    </message>
    <message>
        <source>%1 is up to date.</source>
        <translation>%1 est à jour.</translation>
    </message>
    <message>
        <source>Version %1 is the newest one.</source>
        <translation>La version %1 est la plus récente.</translation>
    </message>
    <message>
        <source>The notes about this version could not be fetched. %1</source>
        <translation>Les notes sur cette version n’ont pas pu être téléchargées. %1</translation>
    </message>
    <message>
        <source>The update of %1 could not be installed.</source>
        <translation>La mise à jour de %1 n’a pas pu être installée.</translation>
    </message>
    <message>
        <source>Downloading version %1…</source>
        <translation>Téléchargement de la version %1…</translation>
    </message>
    <message>
        <source>It is incomplete.</source>
        <translation>Elle est incomplète.</translation>
    </message>
    <message>
        <source>The update of %1 is ready.</source>
        <translation>La mise à jour de %1 est prête.</translation>
    </message>
    <message>
        <source>It is installed as soon as the applet is quit.</source>
        <translation>Elle sera installée dès que l’applet sera quitté.</translation>
    </message>
    <message>
        <source>The applet stays as it is (error %1).</source>
        <translation>L’applet reste inchangé (erreur %1).</translation>
    </message>
</context>
<context>
    <name>quoddle::SpotlightViewController</name>
    <message>
        <source>The system cannot watch so many folders: new files in some of them appear after half a minute.</source>
        <translation>Le système ne peut pas surveiller autant de dossiers&#xa0;: dans certains, les nouveaux fichiers apparaissent après une demi-minute.</translation>
    </message>
    <message>
        <source>The search was stopped. Type to search again.</source>
        <translation>La recherche a été arrêtée. Tapez du texte pour la relancer.</translation>
    </message>
    <message>
        <source>%ld found</source>
        <translation>%ld trouvés</translation>
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
        <translation>Une nouvelle version de %1 est disponible.</translation>
    </message>
    <message>
        <source>Version %1 has come out; you have version %2.</source>
        <translation>La version %1 est sortie&#xa0;; vous avez la version&#xa0;%2.</translation>
    </message>
    <message>
        <source>Install it now?</source>
        <translation>L’installer maintenant&#xa0;?</translation>
    </message>
    <message>
        <source>It cannot be installed from here: %1</source>
        <translation>Elle ne peut pas être installée d’ici&#xa0;: %1</translation>
    </message>
    <message>
        <source>There are no notes about this version.</source>
        <translation>Il n’y a pas de notes sur cette version.</translation>
    </message>
</context>
<context>
    <name>quoddle::UpdateProgressPanel</name>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1 sur&#xa0;%2</translation>
    </message>
</context>
</TS>
