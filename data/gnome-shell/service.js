// What GNOME Shell does for Hollowfernpike: it grabs key combinations, tells of the windows and brings
// them forward. The other side is src/platform/gnome/ShellExtension.cpp.
//
// Only the program is served: whoever owns its name on the session bus. Nobody else learns which
// combinations or windows there are, not even by listening, because signals go to the program alone.

const PROGRAM = 'app.hollowfernpike.Hollowfernpike';
const NAME = 'app.hollowfernpike.Shell';
const PATH = '/app/hollowfernpike/Shell';
const WINDOWS = 'a(uissssbb)';
const INTERFACE = `<node><interface name="${NAME}">
  <method name="SetAccelerators">
    <arg name="accelerators" type="as" direction="in"/>
    <arg name="granted" type="ab" direction="out"/>
  </method>
  <method name="ListWindows"><arg name="windows" type="${WINDOWS}" direction="out"/></method>
  <method name="WatchWindows"><arg name="wanted" type="b" direction="in"/></method>
  <method name="ActivateWindows">
    <arg name="windows" type="au" direction="in"/>
    <arg name="time" type="u" direction="in"/>
  </method>
  <method name="BeginLaunch">
    <arg name="desktop_file_id" type="s" direction="in"/>
    <arg name="time" type="u" direction="in"/>
    <arg name="token" type="s" direction="out"/>
  </method>
  <method name="AllowOwnWindow">
    <arg name="title" type="s" direction="in"/>
    <arg name="token" type="s" direction="out"/>
  </method>
  <method name="EndLaunch"><arg name="token" type="s" direction="in"/></method>
  <signal name="Pressed">
    <arg name="accelerator" type="s"/>
    <arg name="time" type="u"/>
    <arg name="windows" type="${WINDOWS}"/>
  </signal>
  <signal name="WindowsChanged"/>
  <signal name="KeysFreed"/>
</interface></node>`;

// Where the user says which combinations are the shell's.
const KEY_SCHEMAS = ['org.gnome.desktop.wm.keybindings', 'org.gnome.mutter.keybindings',
    'org.gnome.mutter.wayland.keybindings', 'org.gnome.shell.keybindings',
    'org.gnome.settings-daemon.plugins.media-keys'];

const MODES = Shell.ActionMode.ALL &
    ~(Shell.ActionMode.LOCK_SCREEN | Shell.ActionMode.UNLOCK_SCREEN | Shell.ActionMode.LOGIN_SCREEN);
const WINDOW_TYPES = new Set([Meta.WindowType.NORMAL, Meta.WindowType.DIALOG,
    Meta.WindowType.MODAL_DIALOG, Meta.WindowType.UTILITY]);

class Service {
    constructor() {
        this._bus = Gio.DBus.session;
        this._client = null;
        this._clientProcess = 0;
        this._grabs = new Map(); // accelerator -> action of the shell
        this._windowsWatch = 0;
        this._ownName = 0;
        this._pressed = global.display.connect('accelerator-activated',
            (_display, action, _device, time) => this._onActivated(action, time));
        this._watchKeys();
        this._grantShortcutsToRecorder();
        this._object = Gio.DBusExportedObject.wrapJSObject(INTERFACE, this);
        this._object.export(this._bus, PATH);
        this._programWatch = Gio.bus_watch_name_on_connection(this._bus, PROGRAM,
            Gio.BusNameWatcherFlags.NONE,
            (_bus, _name, owner) => this._serve(owner), () => this._serve(null));
    }

    destroy() {
        InhibitShortcutsDialog.prototype._buildLayout = this._buildLayout;
        Gio.bus_unwatch_name(this._programWatch);
        if (this._ownName !== 0)
            Gio.bus_unown_name(this._ownName);
        this._forgetClient();
        this._object.unexport();
        for (const [settings, handler] of this._keyWatches)
            settings.disconnect(handler);
        if (this._keysIdle !== 0)
            GLib.source_remove(this._keysIdle);
        global.display.disconnect(this._pressed);
    }

    _watchKeys() {
        const source = Gio.SettingsSchemaSource.get_default();
        this._keyWatches = KEY_SCHEMAS.filter(schema => source.lookup(schema, true)).map(schema => {
            const settings = new Gio.Settings({schema_id: schema});
            return [settings, settings.connect('changed', () => this._onKeysChanged())];
        });
        this._keysIdle = 0;
    }

    // The shell changes its own grabs in an idle moment, too, but before this one.
    _onKeysChanged() {
        if (this._keysIdle !== 0)
            return;
        this._keysIdle = GLib.idle_add(GLib.PRIORITY_LOW, () => {
            this._keysIdle = 0;
            this._tell('KeysFreed', null);
            return GLib.SOURCE_REMOVE;
        });
    }

    // Takes our name on the bus only after the first look for the program, so that a client that sees the
    // name is served already.
    _serve(client) {
        this._forgetClient();
        this._client = client;
        if (this._ownName === 0) {
            this._ownName = Gio.bus_own_name_on_connection(this._bus, NAME,
                Gio.BusNameOwnerFlags.NONE, null, null);
        }
        if (client !== null)
            this._findProcess(client);
    }

    _forgetClient() {
        this._client = null;
        this._clientProcess = 0;
        this._watchWindows(false);
        this._setAccelerators([]);
    }

    _findProcess(client) {
        this._bus.call('org.freedesktop.DBus', '/org/freedesktop/DBus', 'org.freedesktop.DBus',
            'GetConnectionUnixProcessID', new GLib.Variant('(s)', [client]),
            new GLib.VariantType('(u)'), Gio.DBusCallFlags.NONE, -1, null, (bus, result) => {
                try {
                    const [process] = bus.call_finish(result).deepUnpack();
                    if (client === this._client)
                        this._clientProcess = process;
                } catch {
                    // It has gone again.
                }
            });
    }

    // The recorder wants the keys that are the shell's own. The shell asks the user whether it may have
    // them, who has agreed by enabling this extension. A refusal that the shell remembers holds.
    _grantShortcutsToRecorder() {
        const service = this;
        const dialogs = InhibitShortcutsDialog.prototype;
        const buildLayout = dialogs._buildLayout;
        this._buildLayout = buildLayout;
        dialogs._buildLayout = function (...args) {
            buildLayout.apply(this, args);
            if (service._isClients(this._window))
                this._dialog.open = () => this._emitResponse(Meta.InhibitShortcutsDialogResponse.ALLOW);
        };
    }

    _isClients(window) {
        return this._clientProcess > 0 && window.get_pid() === this._clientProcess;
    }

    SetAcceleratorsAsync([accelerators], invocation) {
        this._answer(invocation, '(ab)', () => [this._setAccelerators(accelerators)]);
    }

    ListWindowsAsync(_nothing, invocation) {
        this._answer(invocation, `(${WINDOWS})`, () => [this._describeWindows()]);
    }

    WatchWindowsAsync([wanted], invocation) {
        this._answer(invocation, '()', () => this._watchWindows(wanted));
    }

    ActivateWindowsAsync([numbers, time], invocation) {
        this._answer(invocation, '()', () => this._activateWindows(numbers, time));
    }

    BeginLaunchAsync([desktopFileId, time], invocation) {
        this._answer(invocation, '(s)', () => [this._beginLaunch(desktopFileId, time)]);
    }

    AllowOwnWindowAsync([title], invocation) {
        this._answer(invocation, '(s)', () => [this._allowOwnWindow(title)]);
    }

    EndLaunchAsync([token], invocation) {
        this._answer(invocation, '()', () => this._endLaunch(token));
    }

    _answer(invocation, type, work) {
        if (invocation.get_sender() !== this._client) {
            invocation.return_dbus_error('org.freedesktop.DBus.Error.AccessDenied',
                'Only Hollowfernpike is served');
            return;
        }
        try {
            invocation.return_value(new GLib.Variant(type, work() ?? []));
        } catch (error) {
            invocation.return_dbus_error('org.freedesktop.DBus.Error.Failed', `${error}`);
        }
    }

    _tell(signal, parameters) {
        if (this._client === null)
            return;
        this._bus.emit_signal(this._client, PATH, NAME, signal, parameters);
    }

    // Those that could not be had before are tried again: they may be free by now.
    _setAccelerators(accelerators) {
        const wanted = new Set(accelerators);
        for (const [accelerator, action] of [...this._grabs]) {
            if (!wanted.has(accelerator)) {
                global.display.ungrab_accelerator(action);
                Main.wm.allowKeybinding(Meta.external_binding_name_for_action(action),
                    Shell.ActionMode.NONE);
                this._grabs.delete(accelerator);
            }
        }
        return accelerators.map(accelerator => this._grabs.has(accelerator) || this._grab(accelerator));
    }

    _grab(accelerator) {
        const action = global.display.grab_accelerator(accelerator,
            Meta.KeyBindingFlags.IGNORE_AUTOREPEAT);
        if (action === Meta.KeyBindingAction.NONE)
            return false;
        Main.wm.allowKeybinding(Meta.external_binding_name_for_action(action), MODES);
        this._grabs.set(accelerator, action);
        return true;
    }

    _onActivated(action, time) {
        for (const [accelerator, known] of this._grabs) {
            if (known === action) {
                this._tell('Pressed', new GLib.Variant(`(su${WINDOWS})`,
                    [accelerator, time, this._describeWindows()]));
                return;
            }
        }
    }

    _windows() {
        const windows = global.get_window_actors().map(actor => actor.meta_window)
            .filter(window => !window.is_override_redirect() &&
                WINDOW_TYPES.has(window.get_window_type()));
        return global.display.sort_windows_by_stacking(windows).reverse();
    }

    _describeWindows() {
        const workspace = global.workspace_manager.get_active_workspace();
        return this._windows().map(window => [
            window.get_stable_sequence(),
            window.get_pid(),
            window.get_wm_class() ?? '',
            window.get_wm_class_instance() ?? '',
            window.get_gtk_application_id() ?? '',
            window.get_sandboxed_app_id() ?? '',
            window.minimized,
            window.located_on_workspace(workspace),
        ]);
    }

    _watchWindows(wanted) {
        const tracker = Shell.WindowTracker.get_default();
        if (this._windowsWatch !== 0)
            tracker.disconnect(this._windowsWatch);
        this._windowsWatch = wanted
            ? tracker.connect('tracked-windows-changed', () => this._tell('WindowsChanged', null)) : 0;
    }

    // From back to front; the last one gets the keys. There is no time before the first key press.
    _activateWindows(numbers, time) {
        const windows = new Map(this._windows().map(window => [window.get_stable_sequence(), window]));
        const chosen = numbers.map(number => windows.get(number)).filter(window => window);
        const last = chosen.pop();
        for (const window of chosen)
            window.raise();
        if (last)
            Main.activateWindow(last, time || global.display.get_current_time_roundtrip());
    }

    // The shell shows a start-up notice for what it knows by an entry.
    _beginLaunch(desktopFileId, time) {
        const app = Shell.AppSystem.get_default().lookup_app(desktopFileId);
        return this._tokenFor(app, time || global.display.get_current_time_roundtrip(),
            global.workspace_manager.get_active_workspace());
    }

    // A token moves a window to its workspace. The user is to go to that of the window instead.
    _allowOwnWindow(title) {
        const here = global.workspace_manager.get_active_workspace();
        const own = this._windows()
            .filter(window => this._isClients(window) && window.get_title() === title);
        const isHere = own.some(window => window.located_on_workspace(here));
        const workspace = isHere ? here : own[0]?.get_workspace() ?? here;
        const time = global.display.get_current_time_roundtrip();
        if (workspace !== here)
            workspace.activate(time);
        return this._tokenFor(null, time, workspace);
    }

    _tokenFor(app, time, workspace) {
        const info = app?.get_app_info() ??
            Gio.AppInfo.create_from_commandline('true', null, Gio.AppInfoCreateFlags.NONE);
        return global.create_app_launch_context(time, workspace.index())
            .get_startup_notify_id(info, []) ?? '';
    }

    _endLaunch(token) {
        global.display.get_startup_notification().get_sequences()
            .find(sequence => sequence.get_id() === token)?.complete();
    }
}
