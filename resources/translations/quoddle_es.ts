<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es" sourcelanguage="en">
<context>
    <name>Appcast</name>
    <message>
        <source>It is no list of versions.</source>
        <translation>No es una lista de versiones.</translation>
    </message>
    <message>
        <source>The list of versions cannot be read: line %1: %2</source>
        <translation>No se puede leer la lista de versiones: línea %1: %2</translation>
    </message>
    <message>
        <source>The list of versions is too long.</source>
        <translation>La lista de versiones es demasiado larga.</translation>
    </message>
</context>
<context>
    <name>AppletPanels</name>
    <message>
        <source>Version %1</source>
        <translation>Versión %1</translation>
    </message>
    <message>
        <source>Choose the Kestrel Applet to test</source>
        <translation>Elija el applet Kestrel que desea probar</translation>
    </message>
</context>
<context>
    <name>BundleArchive</name>
    <message>
        <source>There is no applet in the archive.</source>
        <translation>El archivo no contiene ningún applet.</translation>
    </message>
    <message>
        <source>The archive cannot be unpacked: %1</source>
        <translation>No se puede descomprimir el archivo: %1</translation>
    </message>
    <message>
        <source>it is damaged</source>
        <translation>está dañado</translation>
    </message>
    <message>
        <source>The archive is not to be trusted: %1</source>
        <translation>El archivo no es de confianza: %1</translation>
    </message>
    <message>
        <source>There are too many files in the archive.</source>
        <translation>El archivo contiene demasiados ficheros.</translation>
    </message>
    <message>
        <source>There is more than one applet in the archive.</source>
        <translation>El archivo contiene más de un applet.</translation>
    </message>
    <message>
        <source>What is in the archive is too large.</source>
        <translation>El contenido del archivo es demasiado grande.</translation>
    </message>
</context>
<context>
    <name>ChooseApplicationPanel</name>
    <message>
        <source>Choose Application</source>
        <translation>Elegir aplicación</translation>
    </message>
    <message>
        <source>Select an application:</source>
        <translation>Seleccione una aplicación:</translation>
    </message>
    <message>
        <source>Applications</source>
        <translation>Aplicaciones</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancelar</translation>
    </message>
    <message>
        <source>Choose</source>
        <translation>Elegir</translation>
    </message>
</context>
<context>
    <name>ChooseColor</name>
    <message>
        <source>Choose a Color</source>
        <translation>Elegir un color</translation>
    </message>
</context>
<context>
    <name>ChooseFromListViewController</name>
    <message>
        <source>Please make a choice:</source>
        <translation>Elija una opción:</translation>
    </message>
    <message>
        <source>Choices</source>
        <translation>Opciones</translation>
    </message>
</context>
<context>
    <name>ChooseURLPanel</name>
    <message>
        <source>Choose a URL</source>
        <translation>Elegir una URL</translation>
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
        <translation>Cancelar</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>Aceptar</translation>
    </message>
</context>
<context>
    <name>DisplayDialogPanel</name>
    <message>
        <source>Cancel</source>
        <translation>Cancelar</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>Aceptar</translation>
    </message>
</context>
<context>
    <name>DisplayDialogViewController</name>
    <message>
        <source>Answer</source>
        <translation>Respuesta</translation>
    </message>
    <message>
        <source>Hidden answer</source>
        <translation>Respuesta oculta</translation>
    </message>
</context>
<context>
    <name>Download</name>
    <message>
        <source>The server did not answer in time.</source>
        <translation>El servidor no respondió a tiempo.</translation>
    </message>
    <message>
        <source>The download took too long.</source>
        <translation>La descarga tardó demasiado.</translation>
    </message>
    <message>
        <source>Nothing is fetched from %1: it is no https address.</source>
        <translation>No se descarga nada de %1: no es una dirección https.</translation>
    </message>
    <message>
        <source>The server sends more than was announced.</source>
        <translation>El servidor envía más de lo anunciado.</translation>
    </message>
    <message>
        <source>The server answered with the status %1.</source>
        <translation>El servidor respondió con el estado %1.</translation>
    </message>
</context>
<context>
    <name>FileBrowser</name>
    <message>
        <source>Back</source>
        <translation>Atrás</translation>
    </message>
    <message>
        <source>Forward</source>
        <translation>Adelante</translation>
    </message>
    <message>
        <source>Enclosing Folder</source>
        <translation>Carpeta contenedora</translation>
    </message>
    <message>
        <source>Location</source>
        <translation>Ubicación</translation>
    </message>
    <message>
        <source>New Folder</source>
        <translation>Carpeta nueva</translation>
    </message>
    <message>
        <source>Places</source>
        <translation>Lugares</translation>
    </message>
    <message>
        <source>Files</source>
        <translation>Archivos</translation>
    </message>
</context>
<context>
    <name>FileFacts</name>
    <message>
        <source>Application</source>
        <translation>Aplicación</translation>
    </message>
    <message>
        <source>Rich text document with attachments</source>
        <translation>Documento de texto enriquecido con adjuntos</translation>
    </message>
    <message>
        <source>Package</source>
        <translation>Paquete</translation>
    </message>
    <message>
        <source>Folder</source>
        <translation>Carpeta</translation>
    </message>
    <message>
        <source>Special file</source>
        <translation>Archivo especial</translation>
    </message>
    <message>
        <source>Document</source>
        <translation>Documento</translation>
    </message>
    <message>
        <source>1 byte</source>
        <translation>1 byte</translation>
    </message>
    <message>
        <source>More than %1 items</source>
        <translation>Más de %1 elementos</translation>
    </message>
    <message>
        <source>1 item</source>
        <translation>1 elemento</translation>
    </message>
    <message>
        <source>Created %1</source>
        <translation>Creado: %1</translation>
    </message>
    <message>
        <source>Modified %1</source>
        <translation>Modificado: %1</translation>
    </message>
    <message numerus="yes">
        <source>%Ln items</source>
        <translation>
            <numerusform>%Ln elemento</numerusform>
            <numerusform>%Ln elementos</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>FilePortal</name>
    <message>
        <source>Files that can be chosen</source>
        <translation>Archivos que se pueden elegir</translation>
    </message>
</context>
<context>
    <name>NSOpenPanel</name>
    <message>
        <source>Open</source>
        <translation>Abrir</translation>
    </message>
    <message>
        <source>Choose a Folder</source>
        <translation>Elegir una carpeta</translation>
    </message>
    <message>
        <source>Choose</source>
        <translation>Elegir</translation>
    </message>
    <message>
        <source>“%1” cannot be found.</source>
        <translation>No se encuentra «%1».</translation>
    </message>
    <message>
        <source>“%1” is not of a kind that can be chosen here.</source>
        <translation>«%1» no es de un tipo que se pueda elegir aquí.</translation>
    </message>
</context>
<context>
    <name>NSSavePanel</name>
    <message>
        <source>&amp;Name:</source>
        <translation>&amp;Nombre:</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Nombre</translation>
    </message>
    <message>
        <source>A file cannot be called “%1”.</source>
        <translation>Un archivo no puede llamarse «%1».</translation>
    </message>
    <message>
        <source>The name is too long.</source>
        <translation>El nombre es demasiado largo.</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancelar</translation>
    </message>
    <message>
        <source>Untitled</source>
        <translation>Sin título</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Guardar</translation>
    </message>
    <message>
        <source>The folder “%1” cannot be found.</source>
        <translation>No se encuentra la carpeta «%1».</translation>
    </message>
    <message>
        <source>You are not allowed to save in “%1”.</source>
        <translation>No tiene permiso para guardar en «%1».</translation>
    </message>
    <message>
        <source>“%1” already exists. Do you want to replace it?</source>
        <translation>«%1» ya existe. ¿Desea reemplazarlo?</translation>
    </message>
    <message>
        <source>Replacing it overwrites what it contains.</source>
        <translation>Al reemplazarlo se sobrescribirá su contenido.</translation>
    </message>
    <message>
        <source>Replace</source>
        <translation>Reemplazar</translation>
    </message>
</context>
<context>
    <name>PackedApplets</name>
    <message>
        <source>“%1” cannot be read: %2</source>
        <translation>«%1» no se puede leer: %2</translation>
    </message>
    <message>
        <source>its name is not UTF-8; rename it</source>
        <translation>el nombre no está en UTF-8; cámbielo</translation>
    </message>
    <message>
        <source>it is too large</source>
        <translation>es demasiado grande</translation>
    </message>
    <message>
        <source>there is no applet in it</source>
        <translation>no contiene ningún applet</translation>
    </message>
    <message>
        <source>The folder %1 cannot be made.</source>
        <translation>No se puede crear la carpeta %1.</translation>
    </message>
</context>
<context>
    <name>Places</name>
    <message>
        <source>Home</source>
        <translation>Carpeta personal</translation>
    </message>
    <message>
        <source>Desktop</source>
        <translation>Escritorio</translation>
    </message>
    <message>
        <source>Documents</source>
        <translation>Documentos</translation>
    </message>
    <message>
        <source>Downloads</source>
        <translation>Descargas</translation>
    </message>
    <message>
        <source>Music</source>
        <translation>Música</translation>
    </message>
    <message>
        <source>Pictures</source>
        <translation>Imágenes</translation>
    </message>
    <message>
        <source>Videos</source>
        <translation>Vídeos</translation>
    </message>
    <message>
        <source>Computer</source>
        <translation>Equipo</translation>
    </message>
</context>
<context>
    <name>PreviewContents</name>
    <message>
        <source>The file could not be read.</source>
        <translation>No se pudo leer el archivo.</translation>
    </message>
    <message>
        <source>The text has too many formats to be shown.</source>
        <translation>El texto tiene demasiados formatos para mostrarse.</translation>
    </message>
    <message>
        <source>The file is not there any more.</source>
        <translation>El archivo ya no existe.</translation>
    </message>
</context>
<context>
    <name>ProgressViewController</name>
    <message>
        <source>Progress</source>
        <translation>Progreso</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Detener</translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message>
        <source>Mode</source>
        <translation>Modo</translation>
    </message>
    <message>
        <source>Drop files</source>
        <translation>Soltar archivos</translation>
    </message>
    <message>
        <source>Find files</source>
        <translation>Buscar archivos</translation>
    </message>
</context>
<context>
    <name>ScriptOpening</name>
    <message>
        <source>Cancel</source>
        <translation>Cancelar</translation>
    </message>
    <message>
        <source>Run</source>
        <translation>Ejecutar</translation>
    </message>
    <message>
        <source>Do you want to run the script “%1”?

A script can do whatever you can do, with all of your files. Run it only if you know where it comes from.</source>
        <translation>¿Desea ejecutar el script «%1»?

Un script puede hacer todo lo que puede hacer usted, con todos sus archivos. Ejecútelo solo si sabe de dónde procede.</translation>
    </message>
    <message>
        <source>Run Script</source>
        <translation>Ejecutar script</translation>
    </message>
    <message>
        <source>“%1” could not finish.</source>
        <translation>«%1» no pudo terminar.</translation>
    </message>
    <message>
        <source>“%1” could not be opened.</source>
        <translation>«%1» no se pudo abrir.</translation>
    </message>
    <message>
        <source>Do you want to run the applet “%1”?

You have not opened it before. An applet can do whatever you can do, with all of your files. Run it only if you know where it comes from.</source>
        <translation>¿Desea ejecutar el applet «%1»?

No lo ha abierto antes. Un applet puede hacer todo lo que puede hacer usted, con todos sus archivos. Ejecútelo solo si sabe de dónde procede.</translation>
    </message>
    <message>
        <source>Run Applet</source>
        <translation>Ejecutar applet</translation>
    </message>
</context>
<context>
    <name>SpotlightResultsCell</name>
    <message>
        <source>Name: %@.
Path: %@</source>
        <translation>Nombre: %@.
Ruta: %@</translation>
    </message>
</context>
<context>
    <name>SpotlightViewController</name>
    <message>
        <source>Picture</source>
        <translation>Imagen</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Búsqueda</translation>
    </message>
    <message>
        <source>Name of a file</source>
        <translation>Nombre de un archivo</translation>
    </message>
    <message>
        <source>Results</source>
        <translation>Resultados</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Salir</translation>
    </message>
    <message>
        <source>Searching</source>
        <translation>Buscando</translation>
    </message>
    <message>
        <source>Quick Look</source>
        <translation>Vista rápida</translation>
    </message>
    <message>
        <source>Look at the selected files (space in the list)</source>
        <translation>Ver los archivos seleccionados (espacio en la lista)</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Abrir</translation>
    </message>
</context>
<context>
    <name>StartupViewController</name>
    <message>
        <source>Description</source>
        <translation>Descripción</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Salir</translation>
    </message>
    <message>
        <source>Run</source>
        <translation>Ejecutar</translation>
    </message>
</context>
<context>
    <name>UpdateFetcher</name>
    <message>
        <source>The program quoddle-fetch is missing.</source>
        <translation>Falta el programa quoddle-fetch.</translation>
    </message>
    <message>
        <source>The download was broken off.</source>
        <translation>La descarga se interrumpió.</translation>
    </message>
</context>
<context>
    <name>UpdateInstallation</name>
    <message>
        <source>There is nothing to download in the list of versions.</source>
        <translation>La lista de versiones no contiene nada que descargar.</translation>
    </message>
    <message>
        <source>The applet has no key to tell by whether a download comes from its maker.</source>
        <translation>El applet no tiene ninguna clave con la que comprobar si una descarga procede de su autor.</translation>
    </message>
    <message>
        <source>Its maker has not signed it.</source>
        <translation>Su autor no la ha firmado.</translation>
    </message>
    <message>
        <source>The list of versions does not say how large it is.</source>
        <translation>La lista de versiones no indica su tamaño.</translation>
    </message>
    <message>
        <source>The applet belongs to a software package, which is updated with the system.</source>
        <translation>El applet pertenece a un paquete de software que se actualiza con el sistema.</translation>
    </message>
    <message>
        <source>You may not change the folder that the applet is in.</source>
        <translation>No tiene permiso para modificar la carpeta en la que está el applet.</translation>
    </message>
    <message>
        <source>What was downloaded is another applet.</source>
        <translation>Lo descargado es otro applet.</translation>
    </message>
    <message>
        <source>What was downloaded is another version.</source>
        <translation>Lo descargado es otra versión.</translation>
    </message>
    <message>
        <source>What was downloaded has no script.</source>
        <translation>El applet descargado no tiene ningún script.</translation>
    </message>
</context>
<context>
    <name>UpdatePanel</name>
    <message>
        <source>Notes about this version</source>
        <translation>Notas sobre esta versión</translation>
    </message>
    <message>
        <source>Skip This Version</source>
        <translation>Omitir esta versión</translation>
    </message>
    <message>
        <source>Remind Me Later</source>
        <translation>Recordar más tarde</translation>
    </message>
    <message>
        <source>Open Page</source>
        <translation>Abrir página</translation>
    </message>
    <message>
        <source>Install Update</source>
        <translation>Instalar actualización</translation>
    </message>
</context>
<context>
    <name>quoddle-fetch</name>
    <message>
        <source>The applet&apos;s own key is damaged.</source>
        <translation>La clave del applet está dañada.</translation>
    </message>
    <message>
        <source>What was downloaded cannot be read.</source>
        <translation>No se puede leer lo descargado.</translation>
    </message>
    <message>
        <source>The signature is wrong: what was downloaded does not come from the applet&apos;s maker.</source>
        <translation>La firma no es correcta: lo descargado no procede del autor del applet.</translation>
    </message>
    <message>
        <source>The download is shorter than was announced.</source>
        <translation>La descarga es más corta de lo anunciado.</translation>
    </message>
    <message>
        <source>There is no folder to unpack the archive in.</source>
        <translation>No hay ninguna carpeta en la que descomprimir el archivo.</translation>
    </message>
    <message>
        <source>What was packed cannot be read.</source>
        <translation>No se puede leer lo que se empaquetó.</translation>
    </message>
    <message>
        <source>The file has changed meanwhile. Try again.</source>
        <translation>El archivo ha cambiado mientras tanto. Inténtelo de nuevo.</translation>
    </message>
</context>
<context>
    <name>quoddle::CardView</name>
    <message>
        <source>Information on %1</source>
        <translation>Información sobre %1</translation>
    </message>
</context>
<context>
    <name>quoddle::ChooseFromListViewController</name>
    <message>
        <source>OK</source>
        <translation>Aceptar</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancelar</translation>
    </message>
</context>
<context>
    <name>quoddle::ChooseURLPanel</name>
    <message>
        <source>No addresses are known</source>
        <translation>No se conoce ninguna dirección</translation>
    </message>
</context>
<context>
    <name>quoddle::DescriptionView</name>
    <message>
        <source>The description is not shown: it is larger than %1.</source>
        <translation>No se muestra la descripción: ocupa más de %1.</translation>
    </message>
    <message>
        <source>The description is not shown: it is too long or has too many formats.</source>
        <translation>No se muestra la descripción: es demasiado larga o tiene demasiados formatos.</translation>
    </message>
</context>
<context>
    <name>quoddle::DirectoryModel</name>
    <message>
        <source>1 byte</source>
        <translation>1 byte</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Nombre</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Tamaño</translation>
    </message>
    <message>
        <source>Modified</source>
        <translation>Modificado</translation>
    </message>
</context>
<context>
    <name>quoddle::DropFilesView</name>
    <message>
        <source>Drop zone</source>
        <translation>Zona para soltar</translation>
    </message>
    <message>
        <source>Picture</source>
        <translation>Imagen</translation>
    </message>
    <message>
        <source>Drop files here</source>
        <translation>Suelte aquí los archivos</translation>
    </message>
</context>
<context>
    <name>quoddle::FileBrowser</name>
    <message>
        <source>New Folder</source>
        <translation>Carpeta nueva</translation>
    </message>
    <message>
        <source>Name of the new folder:</source>
        <translation>Nombre de la carpeta nueva:</translation>
    </message>
    <message>
        <source>Create</source>
        <translation>Crear</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancelar</translation>
    </message>
    <message>
        <source>“%1” is there already.</source>
        <translation>«%1» ya existe.</translation>
    </message>
    <message>
        <source>The folder “%1” could not be created.</source>
        <translation>No se pudo crear la carpeta «%1».</translation>
    </message>
    <message>
        <source>Reading…</source>
        <translation>Leyendo…</translation>
    </message>
    <message>
        <source>You are not allowed to see what is in this folder.</source>
        <translation>No tiene permiso para ver el contenido de esta carpeta.</translation>
    </message>
    <message>
        <source>This folder cannot be found.</source>
        <translation>No se encuentra esta carpeta.</translation>
    </message>
    <message>
        <source>Nothing here can be chosen.</source>
        <translation>Aquí no hay nada que elegir.</translation>
    </message>
    <message>
        <source>This folder is empty.</source>
        <translation>Esta carpeta está vacía.</translation>
    </message>
</context>
<context>
    <name>quoddle::HookStopPanel</name>
    <message>
        <source>“%1” is waiting for an answer from its script.</source>
        <translation>«%1» está esperando una respuesta de su script.</translation>
    </message>
    <message>
        <source>Waiting for the script</source>
        <translation>Esperando al script</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Detener</translation>
    </message>
</context>
<context>
    <name>quoddle::JudgingView</name>
    <message>
        <source>Checking the files</source>
        <translation>Comprobando los archivos</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Detener</translation>
    </message>
</context>
<context>
    <name>quoddle::NSToolbar</name>
    <message>
        <source>Toolbar</source>
        <translation>Barra de herramientas</translation>
    </message>
</context>
<context>
    <name>quoddle::PagesView</name>
    <message>
        <source>Pages</source>
        <translation>Páginas</translation>
    </message>
    <message>
        <source>Page %1</source>
        <translation>Página %1</translation>
    </message>
</context>
<context>
    <name>quoddle::PictureView</name>
    <message>
        <source>Picture</source>
        <translation>Imagen</translation>
    </message>
</context>
<context>
    <name>quoddle::PreviewView</name>
    <message>
        <source>Text</source>
        <translation>Texto</translation>
    </message>
</context>
<context>
    <name>quoddle::ProgressViewController</name>
    <message>
        <source>%d%% completed</source>
        <translation>%d&#xa0;%% completado</translation>
    </message>
    <message>
        <source>%@ of %@</source>
        <translation>%@ de %@</translation>
    </message>
</context>
<context>
    <name>quoddle::PromptView</name>
    <message>
        <source>Prompt</source>
        <translation>Indicación</translation>
    </message>
</context>
<context>
    <name>quoddle::QLPreviewPanel</name>
    <message>
        <source>Preview</source>
        <translation>Vista previa</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Cerrar</translation>
    </message>
    <message>
        <source>Previous</source>
        <translation>Anterior</translation>
    </message>
    <message>
        <source>Next</source>
        <translation>Siguiente</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Abrir</translation>
    </message>
    <message>
        <source>%1 (%2 of %3)</source>
        <translation>%1 (%2 de %3)</translation>
    </message>
    <message>
        <source>Open with “%1”</source>
        <translation>Abrir con «%1»</translation>
    </message>
    <message>
        <source>Nothing is selected.</source>
        <translation>No hay nada seleccionado.</translation>
    </message>
    <message>
        <source>Only the beginning of the text is shown.</source>
        <translation>Solo se muestra el principio del texto.</translation>
    </message>
    <message>
        <source>It is too large to be shown here.</source>
        <translation>Es demasiado grande para mostrarse aquí.</translation>
    </message>
    <message>
        <source>Its pages cannot be shown.</source>
        <translation>No se pueden mostrar sus páginas.</translation>
    </message>
    <message>
        <source>The picture cannot be shown.</source>
        <translation>No se puede mostrar la imagen.</translation>
    </message>
    <message>
        <source>Only the first pages are shown.</source>
        <translation>Solo se muestran las primeras páginas.</translation>
    </message>
</context>
<context>
    <name>quoddle::SUUpdater</name>
    <message>
        <source>Should %1 look for updates by itself?</source>
        <translation>¿Desea que %1 busque actualizaciones automáticamente?</translation>
    </message>
    <message>
        <source>You can look for them at any time with “Check for Updates…” in the menu.</source>
        <translation>Puede buscarlas en cualquier momento con «Buscar actualizaciones…» en el menú.</translation>
    </message>
    <message>
        <source>Check Automatically</source>
        <translation>Buscar automáticamente</translation>
    </message>
    <message>
        <source>Don’t Check</source>
        <translation>No buscar</translation>
    </message>
    <message>
        <source>Looking for updates…</source>
        <translation>Buscando actualizaciones…</translation>
    </message>
    <message>
        <source>Preparing version %1…</source>
        <translation>Preparando la versión %1…</translation>
    </message>
    <message>
        <source>%1 does not look for updates now.</source>
        <translation>%1 no busca actualizaciones en este momento.</translation>
    </message>
    <message>
        <source>Try again later.</source>
        <translation>Inténtelo de nuevo más tarde.</translation>
    </message>
    <message>
        <source>%1 cannot look for updates.</source>
        <translation>%1 no puede buscar actualizaciones.</translation>
    </message>
    <message>
        <source>The address in its SUFeedURL is none.</source>
        <translation>La dirección de su SUFeedURL no es válida.</translation>
    </message>
    <message>
        <source>It does not say which version it is.</source>
        <translation>No indica de qué versión se trata.</translation>
    </message>
    <message>
        <source>%1 could not look for updates.</source>
        <translation>%1 no pudo buscar actualizaciones.</translation>
    </message>
    <message>
        <source>%1 is up to date.</source>
        <translation>%1 está actualizado.</translation>
    </message>
    <message>
        <source>Version %1 is the newest one.</source>
        <translation>La versión %1 es la más reciente.</translation>
    </message>
    <message>
        <source>The notes about this version could not be fetched. %1</source>
        <translation>No se pudieron obtener las notas sobre esta versión. %1</translation>
    </message>
    <message>
        <source>The update of %1 could not be installed.</source>
        <translation>No se pudo instalar la actualización de %1.</translation>
    </message>
    <message>
        <source>Downloading version %1…</source>
        <translation>Descargando la versión %1…</translation>
    </message>
    <message>
        <source>It is incomplete.</source>
        <translation>Está incompleta.</translation>
    </message>
    <message>
        <source>The update of %1 is ready.</source>
        <translation>La actualización de %1 está lista.</translation>
    </message>
    <message>
        <source>It is installed as soon as the applet is quit.</source>
        <translation>Se instalará en cuanto se cierre el applet.</translation>
    </message>
    <message>
        <source>The applet stays as it is (error %1).</source>
        <translation>El applet se queda como está (error %1).</translation>
    </message>
</context>
<context>
    <name>quoddle::SpotlightViewController</name>
    <message>
        <source>The system cannot watch so many folders: new files in some of them appear after half a minute.</source>
        <translation>El sistema no puede vigilar tantas carpetas: en algunas, los archivos nuevos aparecen al cabo de medio minuto.</translation>
    </message>
    <message>
        <source>The search was stopped. Type to search again.</source>
        <translation>La búsqueda se detuvo. Escriba para volver a buscar.</translation>
    </message>
    <message>
        <source>%ld found</source>
        <translation>%ld encontrados</translation>
    </message>
</context>
<context>
    <name>quoddle::StartupViewController</name>
    <message>
        <source>Version %1</source>
        <translation>Versión %1</translation>
    </message>
</context>
<context>
    <name>quoddle::UpdatePanel</name>
    <message>
        <source>A new version of %1 is available.</source>
        <translation>Hay una nueva versión de %1.</translation>
    </message>
    <message>
        <source>Version %1 has come out; you have version %2.</source>
        <translation>Ha salido la versión %1; usted tiene la %2.</translation>
    </message>
    <message>
        <source>Install it now?</source>
        <translation>¿Desea instalarla ahora?</translation>
    </message>
    <message>
        <source>It cannot be installed from here: %1</source>
        <translation>No se puede instalar desde aquí: %1</translation>
    </message>
    <message>
        <source>There are no notes about this version.</source>
        <translation>No hay notas sobre esta versión.</translation>
    </message>
</context>
<context>
    <name>quoddle::UpdateProgressPanel</name>
    <message>
        <source>Cancel</source>
        <translation>Cancelar</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1 de %2</translation>
    </message>
</context>
</TS>
