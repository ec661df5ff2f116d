-- Runs in ardour7-lua: a headless session on the dummy back end, white noise into a stereo track
-- through the plug-in, one parameter set through the host, two seconds exported to a WAV file.
local folder = os.getenv("ZONFRA_SESSION_DIR")
local plugin = os.getenv("ZONFRA_PLUGIN_NAME") or "MMK Zonfra QT"
local kind = ARDOUR.PluginType[os.getenv("ZONFRA_PLUGIN_TYPE") or "VST3"]
local parameter = tonumber(os.getenv("ZONFRA_PARAMETER_INDEX") or "1")
local value = tonumber(os.getenv("ZONFRA_PARAMETER_VALUE") or "500")

local backend = AudioEngine:set_backend("None (Dummy)", "", "")
assert(backend, "no dummy back end")
backend:set_device_name("Uniform White Noise")
backend:set_sample_rate(44100)
AudioEngine:start(false)

local session = create_session(folder, "render", 44100)
assert(session, "no session")
-- Lua must not keep the new track list: collected after close_session it would free a dead track.
do
    local created = session:new_audio_track(2, 2, nil, 1, "Noise", ARDOUR.PresentationInfo.max_order,
                                            ARDOUR.TrackMode.Normal, true)
    assert(created:size() == 1, "no track")
end
collectgarbage()
local route = session:route_by_name("Noise")
local insert = ARDOUR.LuaAPI.new_plugin(session, plugin, kind, "")
assert(not insert:isnil(), "the host does not know the plug-in")
assert(route:add_processor_by_index(insert, 0, nil, true) == 0, "cannot insert the plug-in")
assert(ARDOUR.LuaAPI.set_processor_param(insert, parameter, value), "cannot set the parameter")
route:to_track():monitoring_control():set_value(ARDOUR.MonitorChoice.MonitorInput, PBD.GroupControlDisposition.NoGroup)

local export = session:simple_export()
export:set_folder(folder .. "/export")
export:set_name("out")
export:set_range(0, 44100 * 2)
assert(export:check_outputs(), "nothing to export")
assert(export:run_export(), "export failed")
print("exported " .. folder .. "/export/out.wav")
-- The headless session tool of Ardour 7 can crash while it tears a session down (with its own
-- plug-ins too); the export is complete here, so leave at once.
io.stdout:flush()
os.exit(0, false)
