<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es_ES" sourcelanguage="en_US">
<context>
    <name>HotKeyTable</name>
    <message>
        <source>Down arrow</source>
        <translation>Flecha abajo</translation>
    </message>
    <message>
        <source>Left arrow</source>
        <translation>Flecha izquierda</translation>
    </message>
    <message>
        <source>Right arrow</source>
        <translation>Flecha derecha</translation>
    </message>
    <message>
        <source>Up arrow</source>
        <translation>Flecha arriba</translation>
    </message>
    <message>
        <source>Cmd + %1</source>
        <translation>Cmd + %1</translation>
    </message>
    <message>
        <source>Ctrl + %1</source>
        <translation>Ctrl + %1</translation>
    </message>
    <message>
        <source>Shift + %1</source>
        <translation>Mayús + %1</translation>
    </message>
    <message>
        <source>None</source>
        <translation>Ninguno</translation>
    </message>
</context>
<context>
    <name>Reachability</name>
    <message>
        <source>Cellular</source>
        <translation>Red móvil</translation>
    </message>
    <message>
        <source>WiFi</source>
        <translation>Wi-Fi</translation>
    </message>
    <message>
        <source>No Connection</source>
        <translation>Sin conexión</translation>
    </message>
</context>
<context>
    <name>Start</name>
    <message>
        <source>The program&apos;s files are not safe.</source>
        <translation>Los archivos del programa no son seguros.</translation>
    </message>
    <message>
        <source>Another user can change &quot;%1&quot;. It would be run with administrator rights. Please install the program again.</source>
        <translation>Otro usuario puede cambiar «%1», que se ejecutaría con derechos de administrador. Vuelva a instalar el programa.</translation>
    </message>
</context>
<context>
    <name>quorvane::About</name>
    <message>
        <source>About Quorvane</source>
        <translation>Acerca de Quorvane</translation>
    </message>
    <message>
        <source>Quorvane&apos;s icon</source>
        <translation>Icono de Quorvane</translation>
    </message>
    <message>
        <source>Version</source>
        <translation>Versión</translation>
    </message>
    <message>
        <source>Hides your IP address behind one that you were lent.</source>
        <translation>Oculta su dirección IP detrás de una prestada.</translation>
    </message>
    <message>
        <source>Our Website</source>
        <translation>Nuestro sitio web</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Copy Diagnostics</source>
        <translation>Copiar diagnóstico</translation>
    </message>
    <message>
        <source>Copies versions, settings and the ends of the logs, without names, passwords and addresses</source>
        <translation>Copia versiones, ajustes y el final de los registros, sin nombres, contraseñas ni direcciones</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Ayuda</translation>
    </message>
    <message>
        <source>Opens the guide in your browser; F1 does so in every window</source>
        <translation>Abre la guía en el navegador; F1 lo hace en cada ventana</translation>
    </message>
</context>
<context>
    <name>quorvane::AuthenticaionView</name>
    <message>
        <source>Quorvane - Administrator</source>
        <translation>Quorvane - Administrador</translation>
    </message>
    <message>
        <source>Quorvane needs administrator rights</source>
        <translation>Quorvane necesita derechos de administrador</translation>
    </message>
    <message>
        <source>They start and stop OpenVPN and set the DNS servers. Enter the name and the password of an administrator of this computer.</source>
        <translation>Con ellos se inicia y se detiene OpenVPN y se establecen los servidores DNS. Introduzca el nombre y la contraseña de un administrador de este equipo.</translation>
    </message>
    <message>
        <source>&amp;Name:</source>
        <translation>&amp;Nombre:</translation>
    </message>
    <message>
        <source>User name</source>
        <translation>Nombre de usuario</translation>
    </message>
    <message>
        <source>&amp;Password:</source>
        <translation>&amp;Contraseña:</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Contraseña</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancelar</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>Iniciar</translation>
    </message>
</context>
<context>
    <name>quorvane::CommandLine</name>
    <message>
        <source>Exactly one command is needed.</source>
        <translation>Se necesita exactamente una orden.</translation>
    </message>
    <message>
        <source>Unexpected argument &quot;%1&quot;.</source>
        <translation>Argumento inesperado «%1».</translation>
    </message>
    <message>
        <source>--json belongs to --status and --locations.</source>
        <translation>--json va con --status y --locations.</translation>
    </message>
    <message>
        <source>--follow belongs to --status.</source>
        <translation>--follow va con --status.</translation>
    </message>
    <message>
        <source>Controls the running copy of Quorvane. Without options, starts it.</source>
        <translation>Controla la copia en ejecución de Quorvane. Sin opciones, lo inicia.</translation>
    </message>
    <message>
        <source>For --hide: a title that --locations lists.</source>
        <translation>Para --hide: un título que muestra --locations.</translation>
    </message>
    <message>
        <source>Hide the IP, and print the lent one.</source>
        <translation>Ocultar la IP y mostrar la prestada.</translation>
    </message>
    <message>
        <source>Stop hiding the IP.</source>
        <translation>Dejar de ocultar la IP.</translation>
    </message>
    <message>
        <source>Change to an IP of a random location, and print it.</source>
        <translation>Cambiar a una IP de una ubicación aleatoria y mostrarla.</translation>
    </message>
    <message>
        <source>Never use the present IP again; change it, and print the new one.</source>
        <translation>No volver a usar la IP actual; cambiarla y mostrar la nueva.</translation>
    </message>
    <message>
        <source>Print what is hidden.</source>
        <translation>Mostrar lo que está oculto.</translation>
    </message>
    <message>
        <source>Print the locations, one on each line.</source>
        <translation>Mostrar las ubicaciones, una por línea.</translation>
    </message>
    <message>
        <source>Show the window.</source>
        <translation>Mostrar la ventana.</translation>
    </message>
    <message>
        <source>Quit Quorvane.</source>
        <translation>Salir de Quorvane.</translation>
    </message>
    <message>
        <source>With --status or --locations: print JSON.</source>
        <translation>Con --status o --locations: escribir JSON.</translation>
    </message>
    <message>
        <source>With --status: print each change, until Quorvane quits.</source>
        <translation>Con --status: mostrar cada cambio hasta que se cierre Quorvane.</translation>
    </message>
    <message>
        <source>Lift the network lock, without a running copy.</source>
        <translation>Levantar el bloqueo de red, sin una copia en ejecución.</translation>
    </message>
    <message>
        <source>Print the version.</source>
        <translation>Mostrar la versión.</translation>
    </message>
</context>
<context>
    <name>quorvane::CommandRunner</name>
    <message>
        <source>Quorvane is not running, and there is no display to start it on.</source>
        <translation>Quorvane no se está ejecutando y no hay pantalla en la que iniciarlo.</translation>
    </message>
    <message>
        <source>Quorvane could not be started.</source>
        <translation>No se ha podido iniciar Quorvane.</translation>
    </message>
    <message>
        <source>Quorvane&apos;s window asks for an administrator&apos;s name and password.</source>
        <translation>La ventana de Quorvane pide el nombre y la contraseña de un administrador.</translation>
    </message>
    <message>
        <source>Quorvane is not running.</source>
        <translation>Quorvane no se está ejecutando.</translation>
    </message>
    <message>
        <source>Hidden behind %1 (%2). The real IP is %3.</source>
        <translation>Oculta detrás de %1 (%2). La IP real es %3.</translation>
    </message>
    <message>
        <source>Searching for an available IP (%1).</source>
        <translation>Buscando una IP disponible (%1).</translation>
    </message>
    <message>
        <source>Starting: the service has not answered yet.</source>
        <translation>Iniciando: el servicio aún no ha respondido.</translation>
    </message>
    <message>
        <source>Not hidden: %1.</source>
        <translation>No oculta: %1.</translation>
    </message>
    <message>
        <source>Traffic outside the tunnel is blocked.</source>
        <translation>El tráfico fuera del túnel está bloqueado.</translation>
    </message>
</context>
<context>
    <name>quorvane::DisplayState</name>
    <message>
        <source>Stop Hiding IP</source>
        <translation>Dejar de ocultar la IP</translation>
    </message>
    <message>
        <source>WARNING! YOU ARE CURRENTLY NOT HIDING YOUR REAL IP!</source>
        <translation>¡ATENCIÓN! ¡SU IP REAL NO ESTÁ OCULTA EN ESTE MOMENTO!</translation>
    </message>
    <message>
        <source>Searching for an available IP...</source>
        <translation>Buscando una IP disponible…</translation>
    </message>
    <message>
        <source>You are currently hiding your real IP %1</source>
        <translation>Su IP real %1 está oculta en este momento</translation>
    </message>
    <message>
        <source>Every location has been used in this rotation. Refresh the locations or switch &quot;US only&quot; to begin a new one.</source>
        <translation>Ya se han usado todas las ubicaciones de esta rotación. Actualice las ubicaciones o cambie «Solo EE. UU.» para empezar una nueva.</translation>
    </message>
    <message>
        <source>There is no VPN configuration to connect with. Choose a location to get a new one.</source>
        <translation>No hay ninguna configuración de VPN para conectarse. Elija una ubicación para obtener una nueva.</translation>
    </message>
    <message>
        <source>Locations can be refreshed while your IP is not hidden.</source>
        <translation>Las ubicaciones se pueden actualizar mientras su IP no esté oculta.</translation>
    </message>
    <message>
        <source>No answer through the tunnel yet</source>
        <translation>Aún no hay respuesta a través del túnel</translation>
    </message>
    <message>
        <source>Traffic outside the tunnel is blocked.</source>
        <translation>El tráfico fuera del túnel está bloqueado.</translation>
    </message>
    <message>
        <source>Cannot be pressed at the moment</source>
        <translation>No se puede pulsar en este momento</translation>
    </message>
    <message>
        <source>Stops hiding your real IP</source>
        <translation>Deja de ocultar su IP real</translation>
    </message>
    <message>
        <source>Hides your real IP</source>
        <translation>Oculta su IP real</translation>
    </message>
    <message>
        <source>Step 1 of 3: checking the administrator</source>
        <translation>Paso 1 de 3: se comprueba el administrador</translation>
    </message>
    <message>
        <source>Step 2 of 3: getting a configuration</source>
        <translation>Paso 2 de 3: se obtiene una configuración</translation>
    </message>
    <message>
        <source>Step 3 of 3: starting the tunnel</source>
        <translation>Paso 3 de 3: se inicia el túnel</translation>
    </message>
    <message>
        <source>Choose a location, then press Quorvane.</source>
        <translation>Elija una ubicación y pulse Quorvane.</translation>
    </message>
</context>
<context>
    <name>quorvane::HideIpSession</name>
    <message>
        <source>No Internet connection detected, please check your Internet settings.
</source>
        <translation>No se ha detectado ninguna conexión a Internet; compruebe la configuración de Internet.
</translation>
    </message>
    <message>
        <source>No available server detected.
</source>
        <translation>No se ha detectado ningún servidor disponible.
</translation>
    </message>
    <message>
        <source>Location is not available.</source>
        <translation>La ubicación no está disponible.</translation>
    </message>
    <message>
        <source>Please try a different location.</source>
        <translation>Pruebe con otra ubicación.</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Error</translation>
    </message>
    <message>
        <source>There was a problem connecting to the Quorvane server, please check your Internet connection or firewall settings.</source>
        <translation>No se ha podido conectar con el servidor de Quorvane; compruebe su conexión a Internet o la configuración del cortafuegos.</translation>
    </message>
    <message>
        <source>Your real IP is visible</source>
        <translation>Su IP real es visible</translation>
    </message>
    <message>
        <source>Traffic outside the tunnel could not be blocked, so your IP is not hidden.</source>
        <translation>No se ha podido bloquear el tráfico fuera del túnel, por lo que su IP no está oculta.</translation>
    </message>
    <message>
        <source>The block of traffic outside the tunnel could not be lifted.</source>
        <translation>No se ha podido levantar el bloqueo del tráfico fuera del túnel.</translation>
    </message>
    <message>
        <source>Traffic outside the tunnel is still blocked</source>
        <translation>El tráfico fuera del túnel sigue bloqueado</translation>
    </message>
    <message>
        <source>Type &quot;quorvane --unlock&quot; in a terminal to lift the block.</source>
        <translation>Escriba «quorvane --unlock» en un terminal para levantar el bloqueo.</translation>
    </message>
    <message>
        <source>Traffic outside the tunnel is still blocked since Quorvane last ran.</source>
        <translation>El tráfico fuera del túnel sigue bloqueado desde la última ejecución de Quorvane.</translation>
    </message>
    <message>
        <source>It has ended without lifting the block. Your IP is not hidden.</source>
        <translation>Terminó sin levantar el bloqueo. Su IP no está oculta.</translation>
    </message>
    <message>
        <source>Lift the Block</source>
        <translation>Levantar el bloqueo</translation>
    </message>
    <message>
        <source>Hide My IP</source>
        <translation>Ocultar mi IP</translation>
    </message>
    <message>
        <source>Your IP was changed</source>
        <translation>Su IP ha cambiado</translation>
    </message>
    <message>
        <source>%1, %2</source>
        <translation>%1, %2</translation>
    </message>
</context>
<context>
    <name>quorvane::HotKeysPane</name>
    <message>
        <source>Selected hot key is already being used by another action.</source>
        <translation>Otra acción ya utiliza el atajo de teclado seleccionado.</translation>
    </message>
    <message>
        <source>Another program uses this combination.</source>
        <translation>Otro programa utiliza esta combinación.</translation>
    </message>
    <message>
        <source>Belongs to &quot;%1&quot; until Quorvane quits.</source>
        <translation>Reservado a «%1» hasta que se cierre Quorvane.</translation>
    </message>
    <message>
        <source>This keyboard has no such key.</source>
        <translation>Este teclado no tiene esa tecla.</translation>
    </message>
    <message>
        <source>The desktop declined this combination.</source>
        <translation>El escritorio ha rechazado esta combinación.</translation>
    </message>
    <message>
        <source>These work while any program is in front. A combination that you replace stays in force until Quorvane quits.</source>
        <translation>Funcionan con cualquier programa en primer plano. Una combinación sustituida sigue activa hasta que se cierre Quorvane.</translation>
    </message>
    <message>
        <source>This desktop offers no global hot keys: these combinations have no effect.</source>
        <translation>Este escritorio no ofrece atajos de teclado globales: estas combinaciones no tienen efecto.</translation>
    </message>
    <message>
        <source>Its settings can bind keys to commands: %1</source>
        <translation>Su configuración permite asignar teclas a órdenes: %1</translation>
    </message>
</context>
<context>
    <name>quorvane::IpAddressesPane</name>
    <message numerus="yes">
        <source>&amp;minutes</source>
        <comment>behind their number</comment>
        <translation>
            <numerusform>&amp;minuto</numerusform>
            <numerusform>&amp;minutos</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quorvane::LocationList</name>
    <message>
        <source>This location is full.</source>
        <translation>Esta ubicación está llena.</translation>
    </message>
    <message>
        <source>%1, full</source>
        <translation>%1, llena</translation>
    </message>
    <message>
        <source>Random Location</source>
        <translation>Ubicación aleatoria</translation>
    </message>
</context>
<context>
    <name>quorvane::LocationMenu</name>
    <message>
        <source>Location</source>
        <translation>Ubicación</translation>
    </message>
    <message>
        <source>Other</source>
        <translation>Otras</translation>
    </message>
    <message>
        <source>More locations are in the window</source>
        <translation>Hay más ubicaciones en la ventana</translation>
    </message>
</context>
<context>
    <name>quorvane::LocationMenuItem</name>
    <message>
        <source>Country flag</source>
        <translation>Bandera del país</translation>
    </message>
    <message>
        <source>Location</source>
        <translation>Ubicación</translation>
    </message>
    <message>
        <source>Full mark</source>
        <translation>Marca de «llena»</translation>
    </message>
</context>
<context>
    <name>quorvane::LossReason</name>
    <message>
        <source>The tunnel was lost: the VPN server does not answer.</source>
        <translation>Se perdió el túnel: el servidor VPN no responde.</translation>
    </message>
    <message>
        <source>The tunnel was lost: OpenVPN has ended.</source>
        <translation>Se perdió el túnel: OpenVPN ha terminado.</translation>
    </message>
    <message>
        <source>The tunnel was lost: OpenVPN was killed.</source>
        <translation>Se perdió el túnel: se forzó el cierre de OpenVPN.</translation>
    </message>
    <message>
        <source>The tunnel was lost: its network device is gone.</source>
        <translation>Se perdió el túnel: su dispositivo de red ya no existe.</translation>
    </message>
    <message>
        <source>The tunnel was lost: its routes were changed.</source>
        <translation>Se perdió el túnel: se cambiaron sus rutas.</translation>
    </message>
</context>
<context>
    <name>quorvane::MainWindow</name>
    <message>
        <source>State picture</source>
        <translation>Imagen de estado</translation>
    </message>
    <message>
        <source>Status line</source>
        <translation>Línea de estado</translation>
    </message>
    <message>
        <source>Current IP address</source>
        <translation>Dirección IP actual</translation>
    </message>
    <message>
        <source>Country flag</source>
        <translation>Bandera del país</translation>
    </message>
    <message>
        <source>Location:</source>
        <translation>Ubicación:</translation>
    </message>
    <message>
        <source>Location label</source>
        <translation>Etiqueta de la ubicación</translation>
    </message>
    <message>
        <source>Location</source>
        <translation>Ubicación</translation>
    </message>
    <message>
        <source>Notice</source>
        <translation>Aviso</translation>
    </message>
    <message>
        <source>Second notice</source>
        <translation>Segundo aviso</translation>
    </message>
    <message>
        <source>Asking the service</source>
        <translation>Consultando el servicio</translation>
    </message>
    <message>
        <source>&amp;Change IP</source>
        <translation>&amp;Cambiar IP</translation>
    </message>
    <message>
        <source>Change IP</source>
        <translation>Cambiar IP</translation>
    </message>
    <message>
        <source>&amp;Discard IP</source>
        <translation>&amp;Descartar IP</translation>
    </message>
    <message>
        <source>Discard IP</source>
        <translation>Descartar IP</translation>
    </message>
    <message>
        <source>Change IP &amp;every</source>
        <translation>Cambiar &amp;IP cada</translation>
    </message>
    <message>
        <source>Minutes between changes of the IP</source>
        <translation>Minutos entre cambios de IP</translation>
    </message>
    <message>
        <source>Minutes, stepper</source>
        <translation>Minutos, ajuste paso a paso</translation>
    </message>
    <message>
        <source>&amp;US only</source>
        <translation>Solo EE. &amp;UU.</translation>
    </message>
    <message>
        <source>Do not &amp;repeat IPs</source>
        <translation>&amp;No repetir las IP</translation>
    </message>
    <message>
        <source>&amp;Settings</source>
        <translation>C&amp;onfiguración</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Configuración</translation>
    </message>
    <message>
        <source>Our Website</source>
        <translation>Nuestro sitio web</translation>
    </message>
    <message>
        <source>About Quorvane</source>
        <translation>Acerca de Quorvane</translation>
    </message>
    <message>
        <source>Quit Quorvane</source>
        <translation>Salir de Quorvane</translation>
    </message>
    <message>
        <source>Flag: %1</source>
        <translation>Bandera: %1</translation>
    </message>
    <message>
        <source>IP hidden</source>
        <translation>IP oculta</translation>
    </message>
    <message>
        <source>Searching</source>
        <translation>Buscando</translation>
    </message>
    <message>
        <source>IP not hidden</source>
        <translation>IP no oculta</translation>
    </message>
    <message>
        <source>Address notice</source>
        <translation>Aviso sobre la dirección</translation>
    </message>
    <message>
        <source>Notice of the block</source>
        <translation>Aviso sobre el bloqueo</translation>
    </message>
    <message>
        <source>Lift the &amp;Block</source>
        <translation>Levantar el &amp;bloqueo</translation>
    </message>
    <message>
        <source>Lift the block of traffic outside the tunnel</source>
        <translation>Levantar el bloqueo del tráfico fuera del túnel</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Progreso</translation>
    </message>
    <message>
        <source>%1 (%2 s)</source>
        <translation>%1 (%2 s)</translation>
    </message>
    <message>
        <source>R&amp;otation</source>
        <translation>&amp;Rotación</translation>
    </message>
    <message>
        <source>Shows or hides the controls of the rotation</source>
        <translation>Muestra u oculta los controles de la rotación</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Salir</translation>
    </message>
    <message numerus="yes">
        <source>minutes</source>
        <comment>behind their number</comment>
        <translation>
            <numerusform>minuto</numerusform>
            <numerusform>minutos</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quorvane::NetworkLock</name>
    <message>
        <source>The address of the Quorvane server was not found.</source>
        <translation>No se ha encontrado la dirección del servidor de Quorvane.</translation>
    </message>
    <message>
        <source>The administrator&apos;s name and password are not known.</source>
        <translation>No se conocen el nombre ni la contraseña del administrador.</translation>
    </message>
</context>
<context>
    <name>quorvane::QrvAboutWindowController</name>
    <message>
        <source>%1 built %2</source>
        <translation>%1, compilada el %2</translation>
    </message>
    <message>
        <source>Diagnostics Copied</source>
        <translation>Diagnóstico copiado</translation>
    </message>
</context>
<context>
    <name>quorvane::QrvApplicationController</name>
    <message>
        <source>Quorvane is already running.</source>
        <translation>Quorvane ya se está ejecutando.</translation>
    </message>
    <message>
        <source>There is already a copy of Quorvane running. This copy cannot be opened until that instance is quit.</source>
        <translation>Ya hay una copia de Quorvane en ejecución. Esta copia no se puede abrir hasta que se cierre la otra.</translation>
    </message>
</context>
<context>
    <name>quorvane::QrvAuthenticationWindowController</name>
    <message>
        <source>You input wrong user name or password.
</source>
        <translation>El nombre de usuario o la contraseña no son correctos.
</translation>
    </message>
    <message>
        <source>The administrator&apos;s account asks for more than its password: &quot;%1&quot;</source>
        <translation>La cuenta del administrador pide algo más que su contraseña: «%1»</translation>
    </message>
    <message>
        <source>Quorvane can answer the question for the password only. The password was not used for any other question.</source>
        <translation>Quorvane solo puede responder a la petición de la contraseña. La contraseña no se ha usado para ninguna otra pregunta.</translation>
    </message>
</context>
<context>
    <name>quorvane::QrvDiscardIpTableViewController</name>
    <message>
        <source>Discarded IP addresses</source>
        <translation>Direcciones IP descartadas</translation>
    </message>
</context>
<context>
    <name>quorvane::QrvLocationPaneController</name>
    <message>
        <source>Always Use Same IP &amp;Address</source>
        <translation>Usar &amp;siempre la misma dirección IP</translation>
    </message>
    <message>
        <source>Location choice</source>
        <translation>Elección de la ubicación</translation>
    </message>
    <message>
        <source>Please check &quot;Always Use Same IP Address&quot; when you have found a fake IP you would like to reuse</source>
        <translation>Marque «Usar siempre la misma dirección IP» cuando haya encontrado una IP prestada que quiera reutilizar</translation>
    </message>
</context>
<context>
    <name>quorvane::QrvMainWindowController</name>
    <message>
        <source>%1 (ver.%2)</source>
        <translation>%1 (ver.%2)</translation>
    </message>
    <message>
        <source>The name servers can be put back while your IP is not hidden.</source>
        <translation>Los servidores de nombres se pueden restablecer mientras su IP no esté oculta.</translation>
    </message>
    <message>
        <source>The name servers could not be put back.</source>
        <translation>No se han podido restablecer los servidores de nombres.</translation>
    </message>
</context>
<context>
    <name>quorvane::SessionControl</name>
    <message>
        <source>Quorvane was quit.</source>
        <translation>Se ha salido de Quorvane.</translation>
    </message>
    <message>
        <source>There is no location &quot;%1&quot;.</source>
        <translation>No existe la ubicación «%1».</translation>
    </message>
    <message>
        <source>Your IP is not hidden.</source>
        <translation>Su IP no está oculta.</translation>
    </message>
    <message>
        <source>No IP could be hidden.</source>
        <translation>No se ha podido ocultar ninguna IP.</translation>
    </message>
    <message>
        <source>No administrator&apos;s name and password were given.</source>
        <translation>No se han indicado el nombre ni la contraseña de un administrador.</translation>
    </message>
    <message>
        <source>The service has not answered yet.</source>
        <translation>El servicio aún no ha respondido.</translation>
    </message>
</context>
<context>
    <name>quorvane::Settings</name>
    <message>
        <source>Quorvane Settings</source>
        <translation>Configuración de Quorvane</translation>
    </message>
    <message>
        <source>Panes</source>
        <translation>Paneles</translation>
    </message>
    <message>
        <source>Our &amp;Website</source>
        <translation>Nuestro sitio &amp;web</translation>
    </message>
    <message>
        <source>Our Website</source>
        <translation>Nuestro sitio web</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>&amp;Cancelar</translation>
    </message>
    <message>
        <source>&amp;Apply</source>
        <translation>&amp;Aplicar</translation>
    </message>
    <message>
        <source>&amp;OK</source>
        <translation>&amp;OK</translation>
    </message>
</context>
<context>
    <name>quorvane::SettingsAdvanced</name>
    <message>
        <source>User agent:</source>
        <translation>Agente de usuario:</translation>
    </message>
    <message>
        <source>Leave &amp;the browser&apos;s own user agent</source>
        <translation>&amp;Dejar el agente de usuario del navegador</translation>
    </message>
    <message>
        <source>&amp;Use this user agent:</source>
        <translation>&amp;Usar este agente de usuario:</translation>
    </message>
    <message>
        <source>User agent</source>
        <translation>Agente de usuario</translation>
    </message>
    <message>
        <source>Choose a user agent</source>
        <translation>Elegir un agente de usuario</translation>
    </message>
    <message>
        <source>&amp;Hide my referrer header</source>
        <translation>Ocultar &amp;mi encabezado Referer</translation>
    </message>
</context>
<context>
    <name>quorvane::SettingsBrowsers</name>
    <message>
        <source>Browsers:</source>
        <translation>Navegadores:</translation>
    </message>
    <message>
        <source>&amp;Safari</source>
        <translation>&amp;Safari</translation>
    </message>
    <message>
        <source>&amp;Firefox</source>
        <translation>&amp;Firefox</translation>
    </message>
    <message>
        <source>O&amp;pera</source>
        <translation>O&amp;pera</translation>
    </message>
    <message>
        <source>C&amp;hrome</source>
        <translation>C&amp;hrome</translation>
    </message>
</context>
<context>
    <name>quorvane::SettingsCookieCrumble</name>
    <message>
        <source>&amp;Hide my cookie headers</source>
        <translation>Ocultar &amp;mis encabezados de cookies</translation>
    </message>
    <message>
        <source>Cookie &amp;sites:</source>
        <translation>Si&amp;tios de cookies:</translation>
    </message>
    <message>
        <source>Cookie sites</source>
        <translation>Sitios de cookies</translation>
    </message>
    <message>
        <source>No site is listed.</source>
        <translation>No hay ningún sitio en la lista.</translation>
    </message>
    <message>
        <source>De&amp;lete</source>
        <translation>&amp;Eliminar</translation>
    </message>
    <message>
        <source>Delete the selected site</source>
        <translation>Eliminar el sitio seleccionado</translation>
    </message>
    <message>
        <source>&amp;New site:</source>
        <translation>Sitio &amp;nuevo:</translation>
    </message>
    <message>
        <source>New cookie site</source>
        <translation>Nuevo sitio de cookies</translation>
    </message>
    <message>
        <source>A&amp;dd</source>
        <translation>Aña&amp;dir</translation>
    </message>
    <message>
        <source>Add the site</source>
        <translation>Añadir el sitio</translation>
    </message>
</context>
<context>
    <name>quorvane::SettingsHotkeys</name>
    <message>
        <source>&amp;Hide IP:</source>
        <translation>Ocultar la &amp;IP:</translation>
    </message>
    <message>
        <source>Hide IP, hot key</source>
        <translation>Ocultar la IP, atajo de teclado</translation>
    </message>
    <message>
        <source>Hide IP, problem</source>
        <translation>Ocultar la IP, problema</translation>
    </message>
    <message>
        <source>Chan&amp;ge IP:</source>
        <translation>Cambiar &amp;la IP:</translation>
    </message>
    <message>
        <source>Change IP, hot key</source>
        <translation>Cambiar la IP, atajo de teclado</translation>
    </message>
    <message>
        <source>Change IP, problem</source>
        <translation>Cambiar la IP, problema</translation>
    </message>
    <message>
        <source>&amp;Stop hiding IP:</source>
        <translation>D&amp;ejar de ocultar la IP:</translation>
    </message>
    <message>
        <source>Stop hiding IP, hot key</source>
        <translation>Dejar de ocultar la IP, atajo de teclado</translation>
    </message>
    <message>
        <source>Stop hiding IP, problem</source>
        <translation>Dejar de ocultar la IP, problema</translation>
    </message>
    <message>
        <source>&amp;Discard IP:</source>
        <translation>&amp;Descartar la IP:</translation>
    </message>
    <message>
        <source>Discard IP, hot key</source>
        <translation>Descartar la IP, atajo de teclado</translation>
    </message>
    <message>
        <source>Discard IP, problem</source>
        <translation>Descartar la IP, problema</translation>
    </message>
    <message>
        <source>&amp;Bring up window:</source>
        <translation>&amp;Mostrar la ventana:</translation>
    </message>
    <message>
        <source>Bring up window, hot key</source>
        <translation>Mostrar la ventana, atajo de teclado</translation>
    </message>
    <message>
        <source>Bring up window, problem</source>
        <translation>Mostrar la ventana, problema</translation>
    </message>
</context>
<context>
    <name>quorvane::SettingsIpAddresses</name>
    <message>
        <source>&amp;Discarded IP addresses:</source>
        <translation>&amp;Direcciones IP descartadas:</translation>
    </message>
    <message>
        <source>Discarded IP addresses</source>
        <translation>Direcciones IP descartadas</translation>
    </message>
    <message>
        <source>No address is discarded. Discard IP puts the address in use here.</source>
        <translation>Ninguna dirección descartada. «Descartar IP» anota aquí la dirección en uso.</translation>
    </message>
    <message>
        <source>Quorvane does not connect to these addresses again.</source>
        <translation>Quorvane no vuelve a conectarse a estas direcciones.</translation>
    </message>
    <message>
        <source>De&amp;lete</source>
        <translation>&amp;Eliminar</translation>
    </message>
    <message>
        <source>Delete the selected address</source>
        <translation>Eliminar la dirección seleccionada</translation>
    </message>
    <message>
        <source>Clea&amp;r</source>
        <translation>&amp;Vaciar</translation>
    </message>
    <message>
        <source>Clear the list of addresses</source>
        <translation>Vaciar la lista de direcciones</translation>
    </message>
    <message>
        <source>Change IP &amp;every</source>
        <translation>Cambiar &amp;IP cada</translation>
    </message>
    <message>
        <source>Minutes between changes of the IP</source>
        <translation>Minutos entre cambios de IP</translation>
    </message>
    <message>
        <source>Minutes, stepper</source>
        <translation>Minutos, ajuste paso a paso</translation>
    </message>
    <message>
        <source>&amp;Hide my IP when Quorvane starts</source>
        <translation>Ocu&amp;ltar mi IP al iniciar Quorvane</translation>
    </message>
    <message>
        <source>&amp;Start Quorvane when I log in</source>
        <translation>Iniciar &amp;Quorvane al iniciar sesión</translation>
    </message>
    <message>
        <source>Put &amp;back my name servers when I stop hiding</source>
        <translation>Resta&amp;blecer mis servidores de nombres al terminar</translation>
    </message>
    <message>
        <source>Quorvane uses 8.8.8.8 and 8.8.4.4 in place of them.</source>
        <translation>Quorvane usa 8.8.8.8 y 8.8.4.4 en su lugar.</translation>
    </message>
    <message>
        <source>Put Back &amp;Now</source>
        <translation>Res&amp;tablecer ahora</translation>
    </message>
    <message>
        <source>Put back my name servers now</source>
        <translation>Restablecer ahora mis servidores de nombres</translation>
    </message>
    <message>
        <source>Reconnect when the &amp;tunnel is lost</source>
        <translation>Volver a co&amp;nectar si se pierde el túnel</translation>
    </message>
    <message>
        <source>Network lock</source>
        <translation>Bloqueo de red</translation>
    </message>
    <message>
        <source>From the moment you hide your IP until you stop, nothing leaves this computer but the tunnel, even when the tunnel or Quorvane fails.</source>
        <translation>Desde que oculta su IP hasta que lo detiene, nada sale de este equipo fuera del túnel, aunque fallen el túnel o Quorvane.</translation>
    </message>
    <message>
        <source>Block tra&amp;ffic outside the tunnel</source>
        <translation>Bloquear el tráfico &amp;fuera del túnel</translation>
    </message>
    <message>
        <source>Allow my home networ&amp;k all the same</source>
        <translation>&amp;Permitir de todos modos mi red local</translation>
    </message>
    <message>
        <source>Windows:</source>
        <translation>Ventanas:</translation>
    </message>
    <message>
        <source>as the deskto&amp;p</source>
        <translation>como el e&amp;scritorio</translation>
    </message>
    <message>
        <source>alwa&amp;ys dark</source>
        <translation>siempre osc&amp;uras</translation>
    </message>
    <message>
        <source>always li&amp;ght</source>
        <translation>siemp&amp;re claras</translation>
    </message>
</context>
<context>
    <name>quorvane::SettingsToolbar</name>
    <message>
        <source>IP Addresses</source>
        <translation>Direcciones IP</translation>
    </message>
    <message>
        <source>Cookie Crumble</source>
        <translation>Migas de cookies</translation>
    </message>
    <message>
        <source>Hot Keys</source>
        <translation>Atajos</translation>
    </message>
    <message>
        <source>Advanced</source>
        <translation>Avanzado</translation>
    </message>
    <message>
        <source>Test VPN</source>
        <translation>VPN de prueba</translation>
    </message>
</context>
<context>
    <name>quorvane::SettingsVpn</name>
    <message>
        <source>A configuration of your own, for testing. Save stores it at once.</source>
        <translation>Una configuración propia para pruebas. «Guardar» la almacena de inmediato.</translation>
    </message>
    <message>
        <source>Con&amp;figuration:</source>
        <translation>Con&amp;figuración:</translation>
    </message>
    <message>
        <source>Path of the configuration file</source>
        <translation>Ruta del archivo de configuración</translation>
    </message>
    <message>
        <source>&amp;Browse...</source>
        <translation>&amp;Examinar…</translation>
    </message>
    <message>
        <source>Browse for a configuration file</source>
        <translation>Buscar un archivo de configuración</translation>
    </message>
    <message>
        <source>&amp;User name:</source>
        <translation>Nombre de &amp;usuario:</translation>
    </message>
    <message>
        <source>VPN user name</source>
        <translation>Nombre de usuario de VPN</translation>
    </message>
    <message>
        <source>&amp;Password:</source>
        <translation>Co&amp;ntraseña:</translation>
    </message>
    <message>
        <source>VPN password</source>
        <translation>Contraseña de VPN</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>&amp;Guardar</translation>
    </message>
    <message>
        <source>Save configuration and login</source>
        <translation>Guardar la configuración y las credenciales</translation>
    </message>
</context>
<context>
    <name>quorvane::TrayPresence</name>
    <message>
        <source>Change IP</source>
        <translation>Cambiar IP</translation>
    </message>
    <message>
        <source>Copy IP</source>
        <translation>Copiar IP</translation>
    </message>
    <message>
        <source>Check IP in Browser</source>
        <translation>Comprobar la IP en el navegador</translation>
    </message>
    <message>
        <source>Show Quorvane</source>
        <translation>Mostrar Quorvane</translation>
    </message>
    <message>
        <source>Refresh Locations</source>
        <translation>Actualizar ubicaciones</translation>
    </message>
    <message>
        <source>Settings...</source>
        <translation>Configuración…</translation>
    </message>
    <message>
        <source>About Quorvane</source>
        <translation>Acerca de Quorvane</translation>
    </message>
    <message>
        <source>Quit Quorvane</source>
        <translation>Salir de Quorvane</translation>
    </message>
    <message>
        <source>Quorvane: your IP is not hidden</source>
        <translation>Quorvane: su IP no está oculta</translation>
    </message>
    <message>
        <source>Quorvane: searching for an available IP</source>
        <translation>Quorvane: buscando una IP disponible</translation>
    </message>
    <message>
        <source>Quorvane: your IP is hidden behind %1</source>
        <translation>Quorvane: su IP está oculta detrás de %1</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Ayuda</translation>
    </message>
</context>
<context>
    <name>quorvane::VpnPane</name>
    <message>
        <source>Open OpenVPN Configuration</source>
        <translation>Abrir configuración de OpenVPN</translation>
    </message>
    <message>
        <source>OpenVPN configurations (%1)</source>
        <translation>Configuraciones de OpenVPN (%1)</translation>
    </message>
</context>
<context>
    <name>quorvane::WebPages</name>
    <message>
        <source>No web browser could be opened.</source>
        <translation>No se ha podido abrir ningún navegador web.</translation>
    </message>
    <message>
        <source>The page is %1</source>
        <translation>La página es %1</translation>
    </message>
</context>
</TS>
